// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "audio/spectrum_bands.h"

#include <array>
#include <optional>
#include <span>

namespace velun {

/// What the level meter shows: the smoothed height of each band's bar, on a scale that follows the
/// loudest band.
class LevelMeterLevels final {
 public:
  /// Fractions of the meter's height, one per band.
  using Heights = std::array<double, SpectrumBands::bandCount>;

  /// Moves on by one frame with the band levels of the moment, in dB; none while nothing is heard.
  void advance(std::span<const float> bands);

  const Heights& heights() const { return heights_; }
  /// The running peak in dB; none before the first frame.
  std::optional<float> peakDb() const { return peakDb_; }
  /// Whether further frames without levels would change nothing that can be seen.
  bool isSettled() const;

 private:
  Heights heights_{};
  std::optional<float> peakDb_;
};

}  // namespace velun
