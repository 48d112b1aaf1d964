// SPDX-License-Identifier: GPL-3.0-or-later
#include "audio/channel_mix.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace velun {

namespace {

constexpr float kLoudest = 1e6F;
constexpr float kInt16Scale = 1.0F / 32768;

float sound(float sample) {
  return std::abs(sample) < kLoudest ? sample : 0.0F;
}
float sound(std::int16_t sample) {
  return float(sample) * kInt16Scale;
}

/// One kind of samples; channel c of frame i is at first[c * channelStride + i * frameStride].
template <typename Sample>
struct Source {
  const Sample* first;
  std::size_t channelCount;
  std::size_t channelStride;
  std::size_t frameStride;
  std::size_t frameCount;

  float at(std::size_t channel, std::size_t frame) const {
    return sound(first[channel * channelStride + frame * frameStride]);
  }
};

template <typename Sample>
void toMono(const Source<Sample>& source, float* output) {
  if (source.channelCount == 1) {
    for (std::size_t i = 0; i < source.frameCount; ++i) output[i] = sound(source.first[i]);
    return;
  }
  if (source.channelCount == 2 && source.frameStride == 2) {
    const Sample* samples = source.first;
    for (std::size_t i = 0; i < source.frameCount; ++i) {
      output[i] = 0.5F * (sound(samples[2 * i]) + sound(samples[2 * i + 1]));
    }
    return;
  }
  const float scale = 1.0F / float(source.channelCount);
  for (std::size_t i = 0; i < source.frameCount; ++i) {
    float sum = 0;
    for (std::size_t c = 0; c < source.channelCount; ++c) sum += source.at(c, i);
    output[i] = sum * scale;
  }
}

template <typename Sample>
void toChannels(const Source<Sample>& source, std::size_t channelCount, float* output) {
  for (std::size_t i = 0; i < source.frameCount; ++i) {
    for (std::size_t c = 0; c < channelCount; ++c) {
      const std::size_t from = source.channelCount == 1 ? 0 : c;
      output[i * channelCount + c] = from < source.channelCount ? source.at(from, i) : 0.0F;
    }
  }
}

template <typename Sample>
void mix(const PcmBuffer& buffer, const Sample* first, const Sample* second, int channelCount,
         float* output) {
  const Source<Sample> source{first, std::size_t(buffer.format().channelCount),
                              std::size_t(second - first), buffer.stride(), buffer.frameLength()};
  if (channelCount == 1) {
    toMono(source, output);
  } else {
    toChannels(source, std::size_t(channelCount), output);
  }
}

std::int16_t toInt16(float sample) {
  return std::int16_t(std::lrint(std::clamp(sample * 32768.0F, -32768.0F, 32767.0F)));
}

template <typename Convert>
void store(std::span<const float> samples, PcmBuffer& output, Convert convert) {
  using Sample = decltype(convert(0.0F));
  const auto channels = std::size_t(output.format().channelCount);
  const std::size_t channelStride = output.format().isInterleaved ? 1 : output.frameCapacity();
  auto* const first = reinterpret_cast<Sample*>(output.mutableBytes());
  Sample* target = first + output.frameLength() * output.stride();
  for (std::size_t i = 0; i < samples.size(); i += channels) {
    for (std::size_t c = 0; c < channels; ++c) {
      target[c * channelStride] = convert(samples[i + c]);
    }
    target += output.stride();
  }
}

}  // namespace

void mixChannels(const PcmBuffer& buffer, int channelCount, std::span<float> output) {
  if (const float* floats = buffer.floatChannel(0)) {
    mix(buffer, floats, buffer.floatChannel(1), channelCount, output.data());
  } else if (const std::int16_t* words = buffer.int16Channel(0)) {
    mix(buffer, words, buffer.int16Channel(1), channelCount, output.data());
  }
}

void storeFrames(std::span<const float> samples, PcmBuffer& output) {
  if (output.format().sample == AudioFormat::Sample::float32) {
    store(samples, output, [](float sample) { return sample; });
  } else {
    store(samples, output, toInt16);
  }
}

}  // namespace velun
