// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audio/pcm_buffer.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numbers>
#include <span>
#include <vector>

namespace velun::test {

/// A sine of `frequency` Hz from frame `start` on, the same in every channel.
inline PcmBuffer toneBuffer(const AudioFormat& format, double frequency, float amplitude,
                            std::size_t frameCount, std::size_t start = 0) {
  PcmBuffer buffer(format, frameCount);
  buffer.setFrameLength(frameCount);
  const auto channels = std::size_t(format.channelCount);
  for (std::size_t i = 0; i < frameCount; ++i) {
    const double turn = frequency * double(start + i) / format.sampleRate;
    const double value = amplitude * std::sin(2 * std::numbers::pi * turn);
    for (std::size_t c = 0; c < channels; ++c) {
      const std::size_t at = format.isInterleaved ? i * channels + c : c * frameCount + i;
      if (format.sample == AudioFormat::Sample::float32) {
        reinterpret_cast<float*>(buffer.mutableBytes())[at] = float(value);
      } else {
        reinterpret_cast<std::int16_t*>(buffer.mutableBytes())[at] =
            std::int16_t(std::lround(value * 32767));
      }
    }
  }
  return buffer;
}

/// The samples of one channel as floats, 16-bit ones scaled to −1 … 1.
inline std::vector<float> channelOf(const PcmBuffer& buffer, int channel) {
  std::vector<float> samples;
  for (std::size_t i = 0; i < buffer.frameLength(); ++i) {
    const std::size_t at = i * buffer.stride();
    if (const float* floats = buffer.floatChannel(channel)) samples.push_back(floats[at]);
    if (const std::int16_t* words = buffer.int16Channel(channel)) {
      samples.push_back(float(words[at]) / 32768);
    }
  }
  return samples;
}

/// The amplitude of the part of `samples` at `frequency`, by one term of the Fourier sum under a
/// Hann window.
inline double amplitudeAt(std::span<const float> samples, double frequency, double sampleRate) {
  double real = 0;
  double imaginary = 0;
  double weight = 0;
  for (std::size_t i = 0; i < samples.size(); ++i) {
    const double window =
        0.5 * (1 - std::cos(2 * std::numbers::pi * double(i) / double(samples.size())));
    const double angle = 2 * std::numbers::pi * frequency * double(i) / sampleRate;
    real += window * double(samples[i]) * std::cos(angle);
    imaginary += window * double(samples[i]) * std::sin(angle);
    weight += window;
  }
  return weight > 0 ? 2 * std::hypot(real, imaginary) / weight : 0;
}

/// The root of the mean square.
inline double rmsOf(std::span<const float> samples) {
  double sum = 0;
  for (const float sample : samples) sum += double(sample) * double(sample);
  return samples.empty() ? 0 : std::sqrt(sum / double(samples.size()));
}

}  // namespace velun::test
