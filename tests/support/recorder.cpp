// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/recorder.h"

#include "support/signals.h"

namespace velun::test {

std::function<void(const PcmBuffer&)> Recorder::handler() {
  return [this](const PcmBuffer& buffer) {
    take(buffer);
  };
}

void Recorder::clear() {
  const std::lock_guard lock(mutex_);
  samples_.clear();
  format_ = {};
  bufferCount_ = 0;
}

AudioFormat Recorder::format() const {
  const std::lock_guard lock(mutex_);
  return format_;
}

std::vector<float> Recorder::samples() const {
  const std::lock_guard lock(mutex_);
  return samples_;
}

double Recorder::amplitudeAt(double frequency, std::size_t frameCount) const {
  return test::amplitudeAt(last(frameCount), frequency, format().sampleRate);
}

bool Recorder::hearsOnly(double frequency, double other) const {
  const std::vector<float> frames = last(4'800);
  const double rate = format().sampleRate;
  return test::amplitudeAt(frames, frequency, rate) > 0.45 &&
         test::amplitudeAt(frames, other, rate) < 0.01;
}

double Recorder::level(std::size_t frameCount) const {
  return rmsOf(last(frameCount));
}

void Recorder::take(const PcmBuffer& buffer) {
  const std::vector<float> samples = channelOf(buffer, 0);
  const std::lock_guard lock(mutex_);
  if (buffer.format() != format_) samples_.clear();
  format_ = buffer.format();
  samples_.insert(samples_.end(), samples.begin(), samples.end());
  ++bufferCount_;
}

std::vector<float> Recorder::last(std::size_t frameCount) const {
  const std::lock_guard lock(mutex_);
  if (samples_.size() < frameCount) return {};
  return {samples_.end() - std::ptrdiff_t(frameCount), samples_.end()};
}

}  // namespace velun::test
