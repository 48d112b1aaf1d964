// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>

namespace velun {

/// Reports when decoding falls behind the incoming audio and when it has caught up, with hysteresis
/// so that the state does not flicker.
class LagWatch {
 public:
  /// More seconds of waiting audio than this: decoding is behind. Finalizing a long phrase delays
  /// decoding by less.
  static constexpr double kMaxPendingSeconds = 4.0;
  /// At or below this it has caught up.
  static constexpr double kCaughtUpSeconds = 0.5;

  /// The new state, if `pendingSeconds` of waiting audio change it.
  std::optional<bool> update(double pendingSeconds) {
    const double limit = isBehind_ ? kCaughtUpSeconds : kMaxPendingSeconds;
    const bool isBehind = pendingSeconds > limit;
    if (isBehind == isBehind_) return std::nullopt;
    isBehind_ = isBehind;
    return isBehind;
  }

 private:
  bool isBehind_ = false;
};

}  // namespace velun
