// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/pending_indicator.h"

#include "ui/caption/motion.h"
#include "ui/common/accessible_role.h"

#include <chrono>
#include <QPainter>

namespace velun {

namespace {

constexpr std::chrono::milliseconds kTurn{900};
constexpr int kFrameMilliseconds = 33;
constexpr double kThickness = 1.5;
constexpr int kArcDegrees = 260;

/// Current rotation phase, the same for all spinners, from 0 to 1.
double phase() {
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  const auto within = std::chrono::duration_cast<std::chrono::milliseconds>(now) % kTurn;
  return static_cast<double>(within.count()) / static_cast<double>(kTurn.count());
}

}  // namespace

PendingIndicator::PendingIndicator(QWidget* parent) : QWidget(parent) {
  setAccessibleRole(*this, QAccessible::Animation);
  setAttribute(Qt::WA_TransparentForMouseEvents);
}

void PendingIndicator::setLabel(const QString& label) {
  setToolTip(label);
  setAccessibleName(label);
}

void PendingIndicator::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  QColor color = parentWidget()->palette().color(QPalette::Text);
  color.setAlphaF(0.75F);
  painter.setPen(QPen(color, kThickness, Qt::SolidLine, Qt::RoundCap));
  const QRectF circle = QRectF(rect()).adjusted(1.5, 1.5, -1.5, -1.5);
  painter.drawArc(circle, qRound(-phase() * 360 * 16), kArcDegrees * 16);
}

void PendingIndicator::showEvent(QShowEvent*) {
  // With reduced motion the spinner stays still.
  if (motionTime(*this, kTurn) > 0) timer_.start(kFrameMilliseconds, this);
}

void PendingIndicator::hideEvent(QHideEvent*) {
  timer_.stop();
}

void PendingIndicator::timerEvent(QTimerEvent*) {
  if (motionTime(*this, kTurn) == 0) timer_.stop();
  update();
}

}  // namespace velun
