// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audio/audio_source.h"

#include <cmath>
#include <cstddef>
#include <numbers>
#include <span>
#include <vector>

namespace velun::test {

/// A sine of `frequency` Hz from sample `start` on, at the rate of captured audio.
inline std::vector<float> tone(double frequency, float amplitude, std::size_t count,
                               std::size_t start = 0) {
  std::vector<float> samples(count);
  for (std::size_t i = 0; i < count; ++i) {
    const double turn = frequency * double(start + i) / AudioSource::kSampleRate;
    samples[i] = amplitude * float(std::sin(2 * std::numbers::pi * turn));
  }
  return samples;
}

/// The amplitude of the part of `samples` at `frequency`, by one term of the Fourier sum under a
/// Hann window.
inline double amplitudeAt(std::span<const float> samples, double frequency) {
  double real = 0;
  double imaginary = 0;
  double weight = 0;
  for (std::size_t i = 0; i < samples.size(); ++i) {
    const double window =
        0.5 * (1 - std::cos(2 * std::numbers::pi * double(i) / double(samples.size())));
    const double angle = 2 * std::numbers::pi * frequency * double(i) / AudioSource::kSampleRate;
    real += window * double(samples[i]) * std::cos(angle);
    imaginary += window * double(samples[i]) * std::sin(angle);
    weight += window;
  }
  return weight > 0 ? 2 * std::hypot(real, imaginary) / weight : 0;
}

/// The root mean square.
inline double rmsOf(std::span<const float> samples) {
  double sum = 0;
  for (const float sample : samples) sum += double(sample) * double(sample);
  return samples.empty() ? 0 : std::sqrt(sum / double(samples.size()));
}

}  // namespace velun::test
