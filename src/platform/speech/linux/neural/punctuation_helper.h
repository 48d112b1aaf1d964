// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/linux/helper/recognizer_settings.h"
#include "platform/speech/linux/neural/helper_process.h"
#include "platform/speech/punctuation_restorer.h"

#include <memory>

namespace velun {

/// Restores punctuation in the helper program, which is started with the first text. Should the
/// helper fail, texts come back as they were from then on.
class PunctuationHelper final : public PunctuationRestorer {
 public:
  PunctuationHelper(QString program, RecognizerSettings settings);
  ~PunctuationHelper() override;

  QString restored(const QString& text) override;

 private:
  QString exchange(const QString& text);

  QString program_;
  RecognizerSettings settings_;
  std::unique_ptr<HelperProcess> helper_;
  bool hasFailed_ = false;
};

}  // namespace velun
