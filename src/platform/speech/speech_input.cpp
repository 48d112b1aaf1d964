// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/speech_input.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace velun {

void SpeechInput::yield(SpeechSamples input) {
  {
    const std::lock_guard lock(mutex_);
    if (isFinished_) return;
    pendingSeconds_ += input.seconds();
    inputs_.push_back(std::move(input));
    if (pendingSeconds_ > kMaxPendingSeconds && inputs_.size() > 1) {
      takeFirst();
      inputs_.front().followsGap = true;
    }
  }
  changed_.notify_one();
}

bool SpeechInput::awaitRoom(double seconds) {
  std::unique_lock lock(mutex_);
  taken_.wait(lock, [&] { return isFinished_ || pendingSeconds_ <= seconds; });
  return !isFinished_;
}

void SpeechInput::finish() {
  {
    const std::lock_guard lock(mutex_);
    isFinished_ = true;
  }
  changed_.notify_all();
  taken_.notify_all();
}

std::optional<SpeechSamples> SpeechInput::next() {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return isWorthWaking(); });
  isInterrupted_ = false;
  return takeFirst();
}

std::optional<SpeechSamples> SpeechInput::next(std::chrono::milliseconds atMost) {
  std::unique_lock lock(mutex_);
  changed_.wait_for(lock, atMost, [this] { return isWorthWaking(); });
  isInterrupted_ = false;
  return takeFirst();
}

std::optional<SpeechSamples> SpeechInput::tryNext() {
  const std::lock_guard lock(mutex_);
  return takeFirst();
}

std::deque<SpeechSamples> SpeechInput::takeAll() {
  const std::lock_guard lock(mutex_);
  pendingSeconds_ = 0;
  return std::exchange(inputs_, {});
}

void SpeechInput::putBack(std::deque<SpeechSamples> inputs) {
  const std::lock_guard lock(mutex_);
  for (const SpeechSamples& input : inputs) pendingSeconds_ += input.seconds();
  std::move(inputs_.begin(), inputs_.end(), std::back_inserter(inputs));
  inputs_ = std::move(inputs);
}

void SpeechInput::interrupt() {
  {
    const std::lock_guard lock(mutex_);
    isInterrupted_ = true;
  }
  changed_.notify_all();
}

bool SpeechInput::isFinished() const {
  const std::lock_guard lock(mutex_);
  return isFinished_;
}

bool SpeechInput::isDrained() const {
  const std::lock_guard lock(mutex_);
  return isFinished_ && inputs_.empty();
}

double SpeechInput::pendingSeconds() const {
  const std::lock_guard lock(mutex_);
  return pendingSeconds_;
}

std::optional<SpeechSamples> SpeechInput::takeFirst() {
  if (inputs_.empty()) return std::nullopt;
  SpeechSamples input = std::move(inputs_.front());
  inputs_.pop_front();
  pendingSeconds_ = inputs_.empty() ? 0 : pendingSeconds_ - input.seconds();
  taken_.notify_all();
  return input;
}

}  // namespace velun
