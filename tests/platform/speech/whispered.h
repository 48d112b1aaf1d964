// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <random>
#include <span>
#include <vector>

namespace velun::test {

/// An all-pole filter of order 18: the sound of the vocal tract in 20 ms of speech.
struct VocalTract {
  static constexpr std::size_t kOrder = 18;
  static constexpr std::size_t kWindow = 320;

  std::array<double, kOrder + 1> filter{1};
  double residualEnergy = 0;

  /// Linear prediction by the method of Levinson and Durbin.
  explicit VocalTract(std::span<const double, kWindow> windowed) {
    std::array<double, kOrder + 1> correlation{};
    for (std::size_t lag = 0; lag <= kOrder; ++lag) {
      for (std::size_t i = lag; i < kWindow; ++i) {
        correlation[lag] += windowed[i] * windowed[i - lag];
      }
    }
    residualEnergy = correlation[0] * 1.0001 + 1e-12;
    for (std::size_t order = 1; order <= kOrder; ++order) {
      double sum = 0;
      for (std::size_t i = 0; i < order; ++i) sum += filter[i] * correlation[order - i];
      const double reflection = -sum / residualEnergy;
      const auto before = filter;
      for (std::size_t i = 1; i <= order; ++i) filter[i] += reflection * before[order - i];
      residualEnergy *= 1 - reflection * reflection;
    }
  }
};

/// The same words at 16 kHz, whispered: noise that is filtered by the vocal tract has no pitch.
inline std::vector<float> whispered(std::span<const float> speech) {
  constexpr std::size_t kWindow = VocalTract::kWindow;
  std::array<double, kWindow> hann{};
  for (std::size_t i = 0; i < kWindow; ++i) {
    hann[i] = 0.5 - 0.5 * std::cos(2 * std::numbers::pi * static_cast<double>(i) / kWindow);
  }
  std::vector<float> whisper(speech.size(), 0.0F);
  std::mt19937 random(1);
  std::normal_distribution<double> noise;
  for (std::size_t at = 0; at + kWindow <= speech.size(); at += kWindow / 2) {
    std::array<double, kWindow> windowed{};
    for (std::size_t i = 0; i < kWindow; ++i) windowed[i] = hann[i] * double(speech[at + i]);
    const VocalTract tract(windowed);
    // The mean square of a Hann window is 3/8.
    const double gain = std::sqrt(tract.residualEnergy / (0.375 * kWindow));
    std::array<double, kWindow> out{};
    for (std::size_t i = 0; i < kWindow; ++i) {
      out[i] = gain * noise(random);
      for (std::size_t k = 1; k <= std::min(VocalTract::kOrder, i); ++k) {
        out[i] -= tract.filter[k] * out[i - k];
      }
      whisper[at + i] += static_cast<float>(std::clamp(hann[i] * out[i], -1.0, 1.0));
    }
  }
  return whisper;
}

}  // namespace velun::test
