// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <atomic>
#include <span>

namespace velun {

/// Remembers when a sample other than 0 was last captured. Written on the capture thread, read on
/// the main one.
class SoundWatch {
 public:
  /// Notes samples that arrived at `now`, in monotonic seconds. Returns whether they are the first
  /// sound after at least `quiet` seconds of silence. Capture thread.
  bool note(std::span<const float> samples, double now, double quiet) {
    const auto isSound = [](float sample) {
      return sample != 0.0F;
    };
    if (std::none_of(samples.begin(), samples.end(), isSound)) return false;
    return now - lastSound_.exchange(now) >= quiet;
  }

  /// Counts `now` as the time of the last sound. Main thread, before samples arrive.
  void begin(double now) { lastSound_ = now; }

  /// In monotonic seconds. Any thread.
  double lastSound() const { return lastSound_; }

 private:
  std::atomic<double> lastSound_ = 0;
};

}  // namespace velun
