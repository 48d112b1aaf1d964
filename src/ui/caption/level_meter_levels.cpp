// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/level_meter_levels.h"

#include <algorithm>
#include <limits>

namespace velun {

namespace {

constexpr float kPeakDecay = 0.15F;  // dB per frame
constexpr float kMinPeak = -70.0F;
constexpr double kRange = 45.0;  // dB below the peak
constexpr double kMaxHeight = 0.45;
constexpr double kRise = 0.2;
constexpr double kFall = 0.12;
constexpr double kMinVisibleHeight = 0.001;

}  // namespace

void LevelMeterLevels::advance(std::span<const float> bands) {
  const float loudest = bands.empty() ? kMinPeak : *std::ranges::max_element(bands);
  const float decayed = peakDb_ ? *peakDb_ - kPeakDecay : -std::numeric_limits<float>::infinity();
  const float peak = std::max({decayed, loudest, kMinPeak});
  peakDb_ = peak;
  for (std::size_t i = 0; i < heights_.size(); ++i) {
    double target = 0;
    if (i < bands.size()) {
      const double floor = static_cast<double>(peak) - kRange;
      target = std::clamp((static_cast<double>(bands[i]) - floor) / kRange, 0.0, 1.0) * kMaxHeight;
    }
    heights_[i] += (target - heights_[i]) * (heights_[i] < target ? kRise : kFall);
  }
}

bool LevelMeterLevels::isSettled() const {
  return (!peakDb_ || *peakDb_ <= kMinPeak) &&
         std::ranges::all_of(heights_, [](double height) { return height < kMinVisibleHeight; });
}

}  // namespace velun
