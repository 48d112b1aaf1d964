// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/recorder.h"

#include "support/signals.h"

namespace velun::test {

AudioSource::Handler Recorder::handler() {
  return [this](std::span<const float> samples) {
    const std::lock_guard lock(mutex_);
    samples_.insert(samples_.end(), samples.begin(), samples.end());
    ++bufferCount_;
  };
}

void Recorder::clear() {
  const std::lock_guard lock(mutex_);
  samples_.clear();
  bufferCount_ = 0;
}

double Recorder::amplitudeAt(double frequency, std::size_t count) const {
  return test::amplitudeAt(last(count), frequency);
}

bool Recorder::hearsOnly(double frequency, double other) const {
  const std::vector<float> samples = last(AudioSource::kSampleRate / 10);
  return test::amplitudeAt(samples, frequency) > 0.45 && test::amplitudeAt(samples, other) < 0.01;
}

double Recorder::level(std::size_t count) const {
  return rmsOf(last(count));
}

std::vector<float> Recorder::last(std::size_t count) const {
  const std::lock_guard lock(mutex_);
  if (samples_.size() < count) return {};
  return {samples_.end() - std::ptrdiff_t(count), samples_.end()};
}

}  // namespace velun::test
