// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/neural/configured_helper.h"
#include "platform/speech/neural/decoding_speed.h"
#include "platform/speech/recognizer_backend.h"

#include <cstddef>
#include <deque>

namespace velun {

/// A neural recognizer in the helper program. Operations throw when the helper ends or hangs.
class NeuralBackend final : public RecognizerBackend {
 public:
  /// A helper that does not answer within `timeout` counts as crashed. The destructor reports the
  /// speed.
  NeuralBackend(HelperProgram program, RecognizerSettings settings,
                std::chrono::milliseconds timeout = HelperProcess::kDefaultTimeout,
                DecodingSpeed::Report report = {});
  ~NeuralBackend() override;

  void expectRecording() override;
  void standAlone() override { helper_.standAlone(); }

  /// Starts the helper and waits until its model is loaded.
  void load() override;

  void acceptAudio(std::span<const float> samples) override;
  std::vector<TranscriptionResult> poll() override;
  bool expectsResults() const override { return !undecodedPieces_.empty() || isInPhrase_; }
  double undecodedSeconds() const override;
  void awaitDecoding(std::chrono::milliseconds atMost) override;
  void skip() override;
  QString adviceIfTooSlow() const override;
  void finalize() override;
  void cancel() override { helper_.cancel(); }

  /// For tests that kill it.
  pid_t helperProcessId() const { return helper_.process().processId(); }

 private:
  void takeArrived();
  void take(const RecognizerMessage& message);
  void takeHeard(const QByteArray& body);

  ConfiguredHelper helper_;
  std::vector<TranscriptionResult> results_;
  std::deque<std::size_t> undecodedPieces_;  ///< the samples of audio messages without a reply
  bool isInPhrase_ = false;
  DecodingSpeed speed_;
  DecodingSpeed::Report report_;
};

}  // namespace velun
