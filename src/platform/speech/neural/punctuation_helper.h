// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/neural/configured_helper.h"
#include "platform/speech/punctuation_restorer.h"

namespace velun {

/// What the user should know if a file of the punctuation model is missing or damaged.
QString missingPunctuationText();

/// Restores punctuation in the helper program. After a failure of the helper, texts stay unchanged.
class PunctuationHelper final : public PunctuationRestorer {
 public:
  /// A reply takes milliseconds. Words wait for it, so a helper that hangs is not waited for long.
  static constexpr std::chrono::seconds kReplyTimeout{3};
  /// Loading takes a tenth of a second, and a few seconds from a slow disk.
  static constexpr std::chrono::seconds kLoadTimeout{10};

  PunctuationHelper(HelperProgram program, RecognizerSettings settings,
                    std::chrono::milliseconds replyTimeout = kReplyTimeout,
                    std::chrono::milliseconds loadTimeout = kLoadTimeout);
  ~PunctuationHelper() override;

  void load() override;
  QString restored(const QString& text) override;
  std::optional<QString> failure() const override { return failure_; }
  void cancel() override { helper_.cancel(); }

  /// For tests that stop it. Requires that it was loaded and has not failed.
  pid_t helperProcessId() const { return helper_.process().processId(); }

 private:
  QString exchange(const QString& text);
  void giveUp(const HelperEnded& end);

  ConfiguredHelper helper_;
  std::optional<QString> failure_;
};

}  // namespace velun
