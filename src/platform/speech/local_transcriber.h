// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/speech_platform.h"

#include <utility>

namespace velun {

/// A transcriber that a recognizer of this machine serves.
class LocalTranscriber final : public SpeechTranscriber {
 public:
  explicit LocalTranscriber(QString locale) : locale_(std::move(locale)) {}

  QString locale() const override { return locale_; }

 private:
  QString locale_;
};

}  // namespace velun
