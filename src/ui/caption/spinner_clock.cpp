// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/spinner_clock.h"

#include "ui/caption/motion.h"

#include <chrono>
#include <QWidget>

namespace velun {

namespace {

constexpr std::chrono::milliseconds kTurn{900};
constexpr int kFrameMilliseconds = 33;

bool mayMove(const QWidget& spinner) {
  return motionTime(spinner, kTurn) > 0;
}

}  // namespace

std::shared_ptr<SpinnerClock> SpinnerClock::shared() {
  static std::weak_ptr<SpinnerClock> existing;
  std::shared_ptr<SpinnerClock> clock = existing.lock();
  if (!clock) existing = clock = std::make_shared<SpinnerClock>();
  return clock;
}

void SpinnerClock::add(QWidget& spinner) {
  if (!mayMove(spinner)) return;
  remove(spinner);
  spinners_.push_back(&spinner);
  if (timer_.isActive()) return;
  updatePhase();
  timer_.start(kFrameMilliseconds, this);
}

void SpinnerClock::remove(const QWidget& spinner) {
  std::erase(spinners_, &spinner);
  if (spinners_.empty()) timer_.stop();
}

void SpinnerClock::timerEvent(QTimerEvent*) {
  std::erase_if(spinners_, [](const QWidget* spinner) { return !mayMove(*spinner); });
  if (spinners_.empty()) timer_.stop();
  updatePhase();
  for (QWidget* spinner : spinners_) spinner->update();
  Q_EMIT stepped();
}

void SpinnerClock::updatePhase() {
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  const auto within = std::chrono::duration_cast<std::chrono::milliseconds>(now) % kTurn;
  phase_ = static_cast<double>(within.count()) / static_cast<double>(kTurn.count());
}

}  // namespace velun
