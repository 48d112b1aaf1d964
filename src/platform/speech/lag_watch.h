// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>

namespace velun {

/// Tells when decoding falls behind the incoming audio and when it has caught up again, with
/// enough room between the two that the answer does not flicker.
class LagWatch {
 public:
  /// Audio waiting, in seconds, beyond which decoding is behind. Settling a long phrase makes less
  /// wait than this.
  static constexpr double kBehindSeconds = 4.0;
  /// Below this it has caught up.
  static constexpr double kCaughtUpSeconds = 0.5;

  /// The new answer, when `pendingSeconds` of waiting audio change it.
  std::optional<bool> update(double pendingSeconds) {
    const double limit = isBehind_ ? kCaughtUpSeconds : kBehindSeconds;
    const bool isBehind = pendingSeconds > limit;
    if (isBehind == isBehind_) return std::nullopt;
    isBehind_ = isBehind;
    return isBehind;
  }

 private:
  bool isBehind_ = false;
};

}  // namespace velun
