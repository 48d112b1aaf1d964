// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/linux/helper/recognizer_settings.h"
#include "platform/speech/linux/neural/helper_process.h"
#include "platform/speech/recognizer_backend.h"

#include <memory>
#include <mutex>

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
  void reset() override;
  void cancel() override;

  /// For tests that end it.
  pid_t helperProcessId() const { return helper_->processId(); }

 private:
  void replaceHelper();
  bool isCancelled();
  /// Does something with the helper; once, when it ends meanwhile, with a new one.
  template <class Action>
  void attempt(const Action& action);
  void recover(const HelperEnded& end);
  void takeLastResults();
  void settle(RecognizerMessage::Kind kind);
  void take(const RecognizerMessage& message);

  QString program_;
  RecognizerSettings settings_;
  /// Guards the change of helper against `cancel`.
  std::mutex mutex_;
  bool isCancelled_ = false;  // guarded by mutex_
  std::unique_ptr<HelperProcess> helper_;
  std::vector<TranscriptionResult> results_;
  QString draft_;
  int unheard_ = 0;  ///< pieces of sound that were sent but not answered
  bool isInPhrase_ = false;
  bool hasRestarted_ = false;
};

}  // namespace velun
