// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace velun {

/// A point on the wall clock, in UTC, to the microsecond.
using Instant = std::chrono::sys_time<std::chrono::microseconds>;

/// A length of time for instants.
inline Instant::duration durationOf(double seconds) {
  return std::chrono::round<Instant::duration>(std::chrono::duration<double>(seconds));
}

/// A call that is due later. Destroying it cancels the call. Main thread.
class ScheduledCall {
 public:
  virtual ~ScheduledCall() = default;
};

/// The program's only source of time. Tests use `ManualClock`.
class Clock {
 public:
  virtual ~Clock() = default;

  /// The wall clock. Any thread.
  virtual Instant now() const = 0;

  /// Seconds of a clock that never goes back, from an arbitrary start. Any thread.
  virtual double monotonicSeconds() const = 0;

  /// Calls `call` on the main thread after `delay`, unless the result is destroyed before. Main
  /// thread.
  [[nodiscard]] virtual std::unique_ptr<ScheduledCall> callAfter(std::chrono::milliseconds delay,
                                                                 std::function<void()> call) = 0;
};

}  // namespace velun
