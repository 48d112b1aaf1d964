// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/speech_level.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace velun {

namespace {

/// 10 ms at 16 kHz.
constexpr std::size_t kFrame = 160;
/// As a root mean square. Words wrong of 147 in recordings as they are, at 0.03 of their level, and
/// raised from there to this level: 14, 23, 14.
constexpr float kTargetLevel = 0.08F;
constexpr float kMaxGain = 30.0F;

/// The root mean square of the louder half of the 10 ms frames.
float speechLevel(std::span<const float> samples) {
  std::vector<float> powers;
  for (std::size_t i = 0; i + kFrame <= samples.size(); i += kFrame) {
    float power = 0;
    for (const float sample : samples.subspan(i, kFrame)) power += sample * sample;
    powers.push_back(power / kFrame);
  }
  if (powers.empty()) return 0;
  const auto middle = powers.begin() + static_cast<std::ptrdiff_t>(powers.size() / 2);
  std::nth_element(powers.begin(), middle, powers.end());
  float sum = 0;
  for (auto each = middle; each != powers.end(); ++each) sum += *each;
  return std::sqrt(sum / static_cast<float>(powers.end() - middle));
}

}  // namespace

std::vector<float> usableSamples(std::span<const float> samples) {
  std::vector<float> usable(samples.size());
  std::transform(samples.begin(), samples.end(), usable.begin(), [](float sample) {
    return std::isfinite(sample) ? std::clamp(sample, -1.0F, 1.0F) : 0.0F;
  });
  return usable;
}

float gainForLevel(float level) {
  return level > 0 ? std::clamp(kTargetLevel / level, 1.0F, kMaxGain) : 1.0F;
}

float gainFor(std::span<const float> phrase) {
  return gainForLevel(speechLevel(phrase));
}

std::vector<float> amplified(std::span<const float> samples, float gain) {
  std::vector<float> louder(samples.size());
  std::transform(samples.begin(), samples.end(), louder.begin(),
                 [gain](float sample) { return std::clamp(sample * gain, -1.0F, 1.0F); });
  return louder;
}

}  // namespace velun
