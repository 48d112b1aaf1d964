// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/foundation/system_clock.h"

#include <QTimer>

namespace velun {

namespace {

class TimerCall final : public ScheduledCall {
 public:
  TimerCall(std::chrono::milliseconds delay, std::function<void()> call) {
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [call = std::move(call)] {
      // A copy, because the call may destroy this object.
      const std::function<void()> copy = call;
      copy();
    });
    timer_.setSingleShot(true);
    timer_.setTimerType(Qt::PreciseTimer);
    timer_.start(delay);
  }

 private:
  QTimer timer_;
};

}  // namespace

Instant SystemClock::now() const {
  return std::chrono::time_point_cast<std::chrono::microseconds>(std::chrono::system_clock::now());
}

double SystemClock::monotonicSeconds() const {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

std::unique_ptr<ScheduledCall> SystemClock::callAfter(std::chrono::milliseconds delay,
                                                      std::function<void()> call) {
  return std::make_unique<TimerCall>(delay, std::move(call));
}

}  // namespace velun
