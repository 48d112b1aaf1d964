// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "captions/caption_source.h"

namespace velun::test {

/// A source of captions that tests make say things.
class ScriptedSource final : public CaptionSource {
 public:
  void start() override { isStarted = true; }
  void stop() override { isStopped = true; }

  void say(const QString& text) { Q_EMIT eventOccurred(FinalEvent{text, "en_US"}); }

  bool isStarted = false;
  bool isStopped = false;
};

}  // namespace velun::test
