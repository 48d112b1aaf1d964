// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/neural/configured_helper.h"
#include "platform/speech/voice_printer.h"

#include <memory>

namespace velun {

/// Describes voices in a helper program of its own: the built-in recognizer's library must not be
/// loaded beside that of speaker models. A helper that ends is started again, once in a row.
class VoiceHelper final : public VoicePrinter {
 public:
  /// Lines wait for a reply, so a helper that hangs is not waited for long.
  static constexpr std::chrono::seconds kReplyTimeout{3};
  static constexpr std::chrono::seconds kLoadTimeout{10};

  /// `use` is kept as long as the object, and protects the model from being removed.
  VoiceHelper(HelperProgram program, RecognizerSettings settings, VoiceLimits limits,
              std::shared_ptr<const void> use = nullptr,
              std::chrono::milliseconds replyTimeout = kReplyTimeout,
              std::chrono::milliseconds loadTimeout = kLoadTimeout);

  std::optional<VoicePrint> print(std::span<const float> samples) override;
  std::optional<QString> failure() const override { return failure_; }
  void cancel() override { helper_.cancel(); }

  /// For tests that stop it. Requires a print before, and no failure.
  pid_t helperProcessId() const { return helper_.process().processId(); }

 private:
  std::optional<VoicePrint> exchange(std::span<const float> samples);

  ConfiguredHelper helper_;
  const VoiceLimits limits_;
  const std::shared_ptr<const void> use_;
  std::optional<QString> failure_;
};

}  // namespace velun
