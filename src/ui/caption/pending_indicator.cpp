// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/pending_indicator.h"

#include "ui/caption/spinner_clock.h"
#include "ui/common/accessible_role.h"

#include <QPainter>

namespace velun {

namespace {

constexpr double kThickness = 1.5;
constexpr int kArcDegrees = 260;

}  // namespace

PendingIndicator::PendingIndicator(QWidget* parent)
    : QWidget(parent), clock_(SpinnerClock::shared()) {
  setAccessibleRole(*this, QAccessible::Animation);
  setAttribute(Qt::WA_TransparentForMouseEvents);
}

PendingIndicator::~PendingIndicator() {
  clock_->remove(*this);
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
  painter.drawArc(circle, qRound(-clock_->phase() * 360 * 16), kArcDegrees * 16);
}

void PendingIndicator::showEvent(QShowEvent*) {
  clock_->add(*this);
}

void PendingIndicator::hideEvent(QHideEvent*) {
  clock_->remove(*this);
}

}  // namespace velun
