// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "audio/audio_converter.h"
#include "audio/spectrum_bands.h"
#include "platform/foundation/clock.h"
#include "platform/speech/analyzer_input.h"

#include <atomic>
#include <cstddef>
#include <memory>
#include <mutex>
#include <vector>

namespace velun {

/// Brings captured audio into the analyzer's format, measures its spectrum and hands it to the
/// analyzer. Made and read on the main thread, fed on the capture thread.
class AudioFeeder {
 public:
  /// `clock` outlives the feeder; only its monotonic seconds are asked for.
  AudioFeeder(const AudioFormat& format, std::shared_ptr<AnalyzerInputStream> input,
              const Clock& clock);

  /// Takes one captured buffer in any format. What cannot be converted is dropped. In the steady
  /// state it allocates only what it hands over, and it waits for nothing but `bandsLock_`, held
  /// for a copy of 11 numbers. Capture thread, one call at a time.
  void feed(const PcmBuffer& buffer) noexcept;

  /// The levels of the last analysed block in dB, empty before the first. Any thread.
  std::vector<float> bands() const;

  /// When the last buffer arrived, in the clock's monotonic seconds; at first, when the feeder was
  /// made. Any thread.
  double lastFeed() const { return lastFeed_.load(std::memory_order_relaxed); }

  /// Whether anything has gone to the analyzer. Any thread.
  bool hasFedAudio() const { return hasFedAudio_.load(std::memory_order_relaxed); }

  /// Room for what a buffer of `frameLength` frames at `sampleRate` can become, in frames of the
  /// analyzer's format.
  std::size_t outputCapacity(std::size_t frameLength, double sampleRate) const;

 private:
  void convertAndSend(const PcmBuffer& buffer);
  void measure(const PcmBuffer& converted);

  AudioFormat format_;
  std::shared_ptr<AnalyzerInputStream> input_;
  const Clock& clock_;
  std::unique_ptr<AudioConverter> converter_;
  std::atomic<double> lastFeed_;
  std::atomic<bool> hasFedAudio_ = false;
  SpectrumBands spectrum_;
  mutable std::mutex bandsLock_;
  SpectrumBands::Levels latestBands_{};
  bool hasBands_ = false;
};

}  // namespace velun
