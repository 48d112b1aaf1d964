// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audio/pcm_buffer.h"

#include <array>
#include <cstddef>
#include <memory>
#include <span>

namespace velun {

/// Measures sound in 11 bands that divide 120 Hz … 6000 Hz evenly on a logarithmic scale. Works on
/// blocks of 512 samples that do not overlap. One thread at a time.
class SpectrumBands {
 public:
  static constexpr int bandCount = 11;
  static constexpr std::size_t blockSize = 512;
  /// The width of a bin in Hz: 512 points at 16,000 samples per second. It stays so at any rate.
  static constexpr double binWidth = 31.25;

  using Levels = std::array<float, bandCount>;

  /// The bins of a band: from `first` up to, not including, `end`. Bin 0 is in no band.
  struct BinRange {
    std::size_t first = 0;
    std::size_t end = 0;
    bool operator==(const BinRange&) const = default;
  };
  /// Band 0 … 10.
  static BinRange binsOf(int band);

  /// Plans the transform; FFTW's planner wants this on one thread at a time.
  SpectrumBands();
  ~SpectrumBands();
  SpectrumBands(const SpectrumBands&) = delete;
  SpectrumBands& operator=(const SpectrumBands&) = delete;

  /// Adds the samples of channel 0 (16-bit ones scaled by 1/32768) and analyses every complete
  /// block; each replaces the levels of the one before. Allocates nothing.
  void append(const PcmBuffer& buffer);

  /// The levels of the last block in dB, from −120 for silence upward, neither smoothed nor
  /// clamped. Empty before the first block.
  std::span<const float> bands() const;

  /// Samples that wait for their block to be complete.
  std::size_t pendingSampleCount() const { return sampleCount_; }

 private:
  struct Transform;

  template <typename Sample>
  void appendSamples(const Sample* samples, std::size_t stride, std::size_t count, float scale);
  void analyseBlock();

  std::unique_ptr<Transform> fft_;
  std::array<float, blockSize> window_;
  std::array<float, blockSize> samples_;
  std::size_t sampleCount_ = 0;
  std::array<BinRange, bandCount> bins_;
  Levels bands_{};
  bool hasBands_ = false;
};

}  // namespace velun
