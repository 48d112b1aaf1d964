// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <vector>

namespace velun {

/// How often a recognizer that ended unexpectedly is started again. The allowance refills: a
/// restart counts for some minutes only.
class RestartAllowance {
 public:
  static constexpr std::size_t kMaxRestarts = 2;
  static constexpr double kRefillSeconds = 300;

  /// Whether it may be started again at `now`, in seconds of a clock that never goes back; counts
  /// the restart.
  bool take(double now) {
    std::erase_if(restarts_, [now](double at) { return now - at >= kRefillSeconds; });
    if (restarts_.size() >= kMaxRestarts) return false;
    restarts_.push_back(now);
    return true;
  }

 private:
  std::vector<double> restarts_;  ///< the times of those that count
};

}  // namespace velun
