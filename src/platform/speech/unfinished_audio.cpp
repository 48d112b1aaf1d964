// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/unfinished_audio.h"

#include "platform/speech/speech_input.h"

#include <algorithm>
#include <cmath>

namespace velun {

namespace {

std::size_t samplesIn(double seconds) {
  return static_cast<std::size_t>(std::llround(std::max(0.0, seconds) * kSpeechSampleRate));
}

}  // namespace

void UnfinishedAudio::add(std::span<const float> samples) {
  samples_.insert(samples_.end(), samples.begin(), samples.end());
}

void UnfinishedAudio::removeBefore(double seconds) {
  const std::size_t first = begin_ + removed_;
  const std::size_t position = samplesIn(seconds);
  if (position > first) remove(position - first);
}

void UnfinishedAudio::keepLast(double seconds) {
  const std::size_t kept = samplesIn(seconds);
  if (samples().size() > kept) remove(samples().size() - kept);
}

void UnfinishedAudio::remove(std::size_t count) {
  removed_ += std::min(count, samples().size());
  // Moving the rest at every call would cost more than the memory that it frees.
  if (2 * removed_ < samples_.size()) return;
  samples_.erase(samples_.begin(), samples_.begin() + static_cast<std::ptrdiff_t>(removed_));
  begin_ += removed_;
  removed_ = 0;
}

std::span<const float> UnfinishedAudio::between(double begin, double end) const {
  const std::size_t first = begin_ + removed_;
  const std::size_t last = first + samples().size();
  const std::size_t from = std::clamp(samplesIn(begin), first, last);
  const std::size_t to = std::clamp(samplesIn(end), from, last);
  return samples().subspan(from - first, to - from);
}

double UnfinishedAudio::begin() const {
  return static_cast<double>(begin_ + removed_) / kSpeechSampleRate;
}

double UnfinishedAudio::end() const {
  return static_cast<double>(begin_ + samples_.size()) / kSpeechSampleRate;
}

}  // namespace velun
