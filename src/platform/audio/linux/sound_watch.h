// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audio/pcm_buffer.h"

#include <algorithm>
#include <atomic>

namespace velun {

/// Remembers when anything but digital silence was last heard. Written on the capture thread, read
/// on the main one.
class SoundWatch {
 public:
  /// Notes a buffer that came at `now`, in monotonic seconds; true when it is the first sound
  /// after `quiet` seconds or more without. Capture thread.
  bool note(const PcmBuffer& buffer, double now, double quiet) {
    const auto samples = buffer.floatSamples();
    const auto isSound = [](float sample) {
      return sample != 0.0F;
    };
    if (std::none_of(samples.begin(), samples.end(), isSound)) return false;
    return now - lastSound_.exchange(now) >= quiet;
  }

  /// Takes `now` for the time of the last sound. Main thread, before buffers arrive.
  void begin(double now) { lastSound_ = now; }

  /// In monotonic seconds. Any thread.
  double lastSound() const { return lastSound_; }

 private:
  std::atomic<double> lastSound_ = 0;
};

}  // namespace velun
