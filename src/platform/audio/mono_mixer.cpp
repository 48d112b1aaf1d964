// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/audio/mono_mixer.h"

#include "platform/audio/audio_source.h"

#include <algorithm>
#include <cmath>

namespace velun {

namespace {

constexpr float kMaxSample = 1e6F;
/// A channel 60 dB below the loudest one is silent: the noise of an unused input is far below that.
constexpr float kSilence = 1e-3F;
/// Seconds in which a peak decreases to `kSilence` of its level.
constexpr float kPeakSeconds = 10;
/// A peak below that is 0, so that it does not become a denormal number, which is slow.
constexpr float kMinPeak = 1e-9F;

float cleaned(float sample) {
  return std::abs(sample) < kMaxSample ? sample : 0.0F;
}

}  // namespace

MonoMixer::MonoMixer(std::size_t channelCount) : peaks_(channelCount) {}

std::span<const float> MonoMixer::mix(std::span<const float> interleaved) {
  const std::size_t channels = peaks_.size();
  if (channels == 0) return {};
  const std::size_t frames = interleaved.size() / channels;
  mono_.assign(frames, 0);
  const float decay = std::pow(kSilence, float(frames) / (kPeakSeconds * AudioSource::kSampleRate));
  for (std::size_t c = 0; c < channels; ++c) {
    float peak = peaks_[c] < kMinPeak ? 0 : peaks_[c] * decay;
    for (std::size_t i = 0; i < frames; ++i) {
      const float sample = cleaned(interleaved[i * channels + c]);
      peak = std::max(peak, std::abs(sample));
      mono_[i] += sample;
    }
    peaks_[c] = peak;
  }
  const float factor = gain();
  if (factor != 1) {
    for (float& sample : mono_) sample *= factor;
  }
  return mono_;
}

float MonoMixer::gain() const {
  const float threshold = std::ranges::max(peaks_) * kSilence;
  const auto isLive = [threshold](float peak) {
    return peak > threshold;
  };
  return 1.0F / float(std::max<std::ptrdiff_t>(1, std::ranges::count_if(peaks_, isLive)));
}

}  // namespace velun
