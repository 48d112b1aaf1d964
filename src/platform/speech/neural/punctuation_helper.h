// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/neural/configured_helper.h"
#include "platform/speech/punctuation_restorer.h"

namespace velun {

/// Restores punctuation in the helper program. After a failure of the helper, texts stay unchanged.
class PunctuationHelper final : public PunctuationRestorer {
 public:
  PunctuationHelper(QString program, RecognizerSettings settings);
  ~PunctuationHelper() override;

  void load() override;
  QString restored(const QString& text) override;
  bool isReady() const override { return !hasFailed_; }
  void cancel() override { helper_.cancel(); }

 private:
  QString exchange(const QString& text);
  void giveUp(const HelperEnded& end);

  ConfiguredHelper helper_;
  bool hasFailed_ = false;
};

}  // namespace velun
