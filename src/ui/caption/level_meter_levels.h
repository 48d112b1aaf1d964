// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "audio/spectrum_bands.h"

#include <array>
#include <optional>
#include <span>

namespace velun {

/// The smoothed heights of the level meter's bars, one per band, on a scale that follows the
/// loudest band.
class LevelMeterLevels final {
 public:
  /// Fractions of the meter's height, one per band.
  using Heights = std::array<double, SpectrumBands::bandCount>;

  /// Advances by one frame with the current band levels in dB; empty while there is no sound.
  void advance(std::span<const float> bands);

  const Heights& heights() const { return heights_; }
  /// The running peak in dB; nullopt before the first frame.
  std::optional<float> peakDb() const { return peakDb_; }
  /// Whether further frames without levels would change nothing visible.
  bool isSettled() const;

 private:
  Heights heights_{};
  std::optional<float> peakDb_;
};

}  // namespace velun
