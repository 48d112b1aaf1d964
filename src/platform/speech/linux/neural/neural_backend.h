// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/linux/neural/configured_helper.h"
#include "platform/speech/recognizer_backend.h"

namespace velun {

/// A neural recognizer, at work in the helper program. When the helper ends by itself, a new one
/// goes on after the phrase under way, which stays as it was shown; the second time the run ends.
class NeuralBackend final : public RecognizerBackend {
 public:
  NeuralBackend(QString program, RecognizerSettings settings);
  ~NeuralBackend() override;

  /// Starts the helper and waits until its model is loaded.
  void load() override;

  void acceptAudio(std::span<const float> samples) override;
  std::vector<TranscriptionResult> poll() override;
  bool expectsResults() const override { return unheard_ > 0 || isInPhrase_; }
  void finalize() override;
  void cancel() override { helper_.cancel(); }

  /// For tests that end it.
  pid_t helperProcessId() const { return helper_.process().processId(); }

 private:
  /// Does something with the helper; once, when it ends meanwhile, with a new one.
  template <class Action>
  void attempt(const Action& action);
  void recover(const HelperEnded& end);
  void takeLastResults();
  void takeArrived();
  void take(const RecognizerMessage& message);

  ConfiguredHelper helper_;
  std::vector<TranscriptionResult> results_;
  QString draft_;
  int unheard_ = 0;  ///< pieces of sound that were sent but not answered
  bool isInPhrase_ = false;
  bool hasRestarted_ = false;
};

}  // namespace velun
