// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/clock.h"

namespace velun {

/// The machine's clocks and the event loop's timers.
class SystemClock final : public Clock {
 public:
  Instant now() const override;
  double monotonicSeconds() const override;
  std::unique_ptr<ScheduledCall> callAfter(std::chrono::milliseconds delay,
                                           std::function<void()> call) override;
};

}  // namespace velun
