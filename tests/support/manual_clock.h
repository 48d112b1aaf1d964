// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/clock.h"

#include <algorithm>
#include <atomic>
#include <QCoreApplication>
#include <vector>

namespace velun::test {

/// A clock that only moves when the test advances it.
class ManualClock final : public Clock {
 public:
  Instant now() const override { return now_; }
  double monotonicSeconds() const override {
    return std::chrono::duration<double>(now() - start_).count();
  }

  std::unique_ptr<ScheduledCall> callAfter(std::chrono::milliseconds delay,
                                           std::function<void()> call) override {
    auto scheduled = std::make_unique<Scheduled>(*this, now() + delay, std::move(call));
    scheduled_.push_back(scheduled.get());
    return scheduled;
  }

  /// Advances time and makes every call that becomes due, in order. Runs posted events after each
  /// call and at the end.
  void advance(std::chrono::milliseconds by) {
    const Instant end = now() + by;
    QCoreApplication::processEvents();
    while (Scheduled* next = firstDue(end)) {
      now_ = std::max(now(), next->due);
      std::erase(scheduled_, next);
      const std::function<void()> call = std::move(next->call);
      call();
      QCoreApplication::processEvents();
    }
    now_ = end;
  }

  /// The number of scheduled calls.
  std::size_t scheduledCount() const { return scheduled_.size(); }

 private:
  struct Scheduled final : ScheduledCall {
    Scheduled(ManualClock& owner, Instant at, std::function<void()> what)
        : clock(owner), due(at), call(std::move(what)) {}
    ~Scheduled() override { std::erase(clock.scheduled_, this); }
    ManualClock& clock;
    Instant due;
    std::function<void()> call;
  };

  Scheduled* firstDue(Instant end) {
    const auto first =
        std::min_element(scheduled_.begin(), scheduled_.end(),
                         [](const Scheduled* a, const Scheduled* b) { return a->due < b->due; });
    return first != scheduled_.end() && (*first)->due <= end ? *first : nullptr;
  }

  Instant start_ = std::chrono::sys_days(std::chrono::year(2025) / 3 / 1);
  std::atomic<Instant> now_ = start_;
  std::vector<Scheduled*> scheduled_;
};

}  // namespace velun::test
