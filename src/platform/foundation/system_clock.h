// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/clock.h"

namespace velun {

/// The clocks of the system and the timers of Qt's event loop.
class SystemClock final : public Clock {
 public:
  Instant now() const override;
  double monotonicSeconds() const override;
  std::unique_ptr<ScheduledCall> callAfter(std::chrono::milliseconds delay,
                                           std::function<void()> call) override;
};

}  // namespace velun
