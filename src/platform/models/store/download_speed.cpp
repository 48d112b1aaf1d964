// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/models/store/download_speed.h"

#include <algorithm>
#include <cmath>

namespace velun {

namespace {

constexpr double kWindowSeconds = 5;
constexpr double kMinSeconds = 1;
/// A longer time is not shown: the speed of the last seconds says nothing about days.
constexpr double kMaxSecondsLeft = 100 * 3600.0;

}  // namespace

void DownloadSpeed::add(double seconds, std::int64_t bytes) {
  if (!samples_.empty() && bytes < samples_.back().bytes) samples_.clear();
  samples_.push_back({seconds, bytes});
  while (samples_.size() > 2 && seconds - samples_[1].seconds >= kWindowSeconds) {
    samples_.pop_front();
  }
}

double DownloadSpeed::bytesPerSecond() const {
  if (samples_.empty()) return 0;
  const double seconds = samples_.back().seconds - samples_.front().seconds;
  if (seconds < kMinSeconds) return 0;
  return static_cast<double>(samples_.back().bytes - samples_.front().bytes) / seconds;
}

std::optional<int> DownloadSpeed::secondsFor(std::int64_t bytes) const {
  const double speed = bytesPerSecond();
  if (speed <= 0) return std::nullopt;
  const double seconds = std::ceil(static_cast<double>(bytes) / speed);
  if (seconds > kMaxSecondsLeft) return std::nullopt;
  return static_cast<int>(std::max(seconds, 0.0));
}

}  // namespace velun
