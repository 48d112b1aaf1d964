// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/analyzer_input.h"

#include <utility>

namespace velun {

void AnalyzerInputStream::yield(AnalyzerInput input) {
  {
    const std::lock_guard lock(mutex_);
    if (isFinished_) return;
    pendingSeconds_ += input.seconds();
    inputs_.push_back(std::move(input));
  }
  changed_.notify_one();
}

void AnalyzerInputStream::finish() {
  {
    const std::lock_guard lock(mutex_);
    isFinished_ = true;
  }
  changed_.notify_all();
}

std::optional<AnalyzerInput> AnalyzerInputStream::next() {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return isWorthWaking(); });
  isInterrupted_ = false;
  return takeFirst();
}

std::optional<AnalyzerInput> AnalyzerInputStream::next(std::chrono::milliseconds atMost) {
  std::unique_lock lock(mutex_);
  changed_.wait_for(lock, atMost, [this] { return isWorthWaking(); });
  isInterrupted_ = false;
  return takeFirst();
}

std::optional<AnalyzerInput> AnalyzerInputStream::tryNext() {
  const std::lock_guard lock(mutex_);
  return takeFirst();
}

void AnalyzerInputStream::interrupt() {
  {
    const std::lock_guard lock(mutex_);
    isInterrupted_ = true;
  }
  changed_.notify_all();
}

bool AnalyzerInputStream::isDrained() const {
  const std::lock_guard lock(mutex_);
  return isFinished_ && inputs_.empty();
}

double AnalyzerInputStream::pendingSeconds() const {
  const std::lock_guard lock(mutex_);
  return pendingSeconds_;
}

std::optional<AnalyzerInput> AnalyzerInputStream::takeFirst() {
  if (inputs_.empty()) return std::nullopt;
  AnalyzerInput input = std::move(inputs_.front());
  inputs_.pop_front();
  pendingSeconds_ = inputs_.empty() ? 0 : pendingSeconds_ - input.seconds();
  return input;
}

}  // namespace velun
