// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <span>

namespace velun {

/// Measures sound in 11 bands that divide 120 Hz … 6000 Hz evenly on a logarithmic scale, in blocks
/// of 512 samples that do not overlap. One thread at a time.
class SpectrumBands {
 public:
  static constexpr int bandCount = 11;
  static constexpr std::size_t blockSize = 512;
  /// The width of a bin in Hz: 512 points at 16,000 samples per second.
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

  /// Plans the transform. FFTW's planner is not thread-safe: construct on the main thread only.
  SpectrumBands();
  ~SpectrumBands();
  SpectrumBands(const SpectrumBands&) = delete;
  SpectrumBands& operator=(const SpectrumBands&) = delete;

  /// Adds mono samples and analyses every complete block; each replaces the levels of the block
  /// before. Allocates nothing.
  void append(std::span<const float> samples);

  /// The levels of the last block in dB, from −120 for silence upward, neither smoothed nor
  /// clamped. Empty before the first block.
  std::span<const float> bands() const;

  /// The number of samples of the block that is not complete yet.
  std::size_t pendingSampleCount() const { return sampleCount_; }

 private:
  struct Transform;

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
