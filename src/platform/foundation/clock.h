// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/instant.h"

#include <chrono>
#include <functional>
#include <memory>

namespace velun {

/// A call that is due later; destroying it takes it back. Main thread.
class ScheduledCall {
 public:
  virtual ~ScheduledCall() = default;
};

/// The program's one source of time, replaced in tests by a clock that is advanced by hand.
class Clock {
 public:
  virtual ~Clock() = default;

  /// The wall clock. Any thread.
  virtual Instant now() const = 0;

  /// Seconds on a clock that never goes back; its zero is arbitrary. Any thread.
  virtual double monotonicSeconds() const = 0;

  /// Calls `call` on the main thread once `delay` has passed, unless the result is destroyed
  /// before that. Main thread.
  [[nodiscard]] virtual std::unique_ptr<ScheduledCall> callAfter(std::chrono::milliseconds delay,
                                                                 std::function<void()> call) = 0;
};

}  // namespace velun
