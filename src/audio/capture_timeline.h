// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>

namespace velun {

/// Says when the samples of a capture stream were heard. They follow each other without gaps, but
/// the calls that bring them are late, each by another time; the least late ones count. Positions
/// are samples at 16 kHz since the zero of the monotonic clock. One thread.
class CaptureTimeline {
 public:
  /// The position of the first of `count` samples that came at `time`, in monotonic seconds. It
  /// follows the samples before, except after a gap, or when the device's clock has drifted.
  std::int64_t place(double time, std::size_t count);

 private:
  struct Call {
    double time = 0;
    /// In samples, beside the present positions.
    std::int64_t lateness = 0;
  };

  void shift(std::int64_t samples);

  std::int64_t next_ = 0;
  /// Until this time the first calls, or those after a gap, may have been late.
  std::optional<double> settling_;
  /// Of the last two seconds.
  std::deque<Call> calls_;
};

}  // namespace velun
