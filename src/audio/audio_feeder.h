// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "audio/spectrum_bands.h"
#include "platform/foundation/clock.h"
#include "platform/speech/speech_input.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <span>
#include <vector>

namespace velun {

/// Passes captured audio to the recognizer and measures its spectrum. Created and read on the main
/// thread, fed on the capture thread.
class AudioFeeder {
 public:
  /// `clock` outlives the feeder.
  AudioFeeder(std::shared_ptr<SpeechInput> input, const Clock& clock);

  /// Takes mono samples at 16 kHz. Allocates only the copy that it passes on, and waits only for
  /// `bandsLock_`, which is held to copy 11 numbers. Capture thread, one call at a time.
  void feed(std::span<const float> samples) noexcept;

  /// The levels of the last analysed block in dB, empty before the first. Any thread.
  std::vector<float> bands() const;

  /// When `feed` was last called, in the clock's monotonic seconds; before the first call, when the
  /// feeder was created. Any thread.
  double lastFeed() const { return lastFeed_.load(std::memory_order_relaxed); }

  /// Whether any samples have been passed on. Any thread.
  bool hasFedAudio() const { return hasFedAudio_.load(std::memory_order_relaxed); }

 private:
  void measure(std::span<const float> samples);

  std::shared_ptr<SpeechInput> input_;
  const Clock& clock_;
  std::atomic<double> lastFeed_;
  std::atomic<bool> hasFedAudio_ = false;
  SpectrumBands spectrum_;
  mutable std::mutex bandsLock_;
  SpectrumBands::Levels latestBands_{};
  bool hasBands_ = false;
};

}  // namespace velun
