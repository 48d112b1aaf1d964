// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/caption_button.h"

#include "ui/caption/caption_appearance.h"
#include "ui/caption/transcript_formats.h"

#include <algorithm>
#include <QPainter>

namespace velun {

namespace {

constexpr double kTextSize = 12;
constexpr int kMinHeight = 28;
constexpr int kPadding = 14;
constexpr double kRing = 2;
constexpr double kDisabledOpacity = 0.35;

}  // namespace

CaptionButton::CaptionButton(QWidget* parent) : QAbstractButton(parent) {
  setFont(systemFont(kTextSize));
  setFocusPolicy(Qt::TabFocus);
  setAttribute(Qt::WA_Hover);
  setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
}

void CaptionButton::setColors(const CaptionColors& colors) {
  colors_ = colors;
  update();
}

QSize CaptionButton::sizeHint() const {
  return QSize(fontMetrics().horizontalAdvance(text()) + 2 * kPadding,
               std::max(kMinHeight, fontMetrics().height() + 10));
}

bool CaptionButton::focusNextPrevChild(bool next) {
  // Qt calls this when the button is disabled.
  return !isEnabled() || QAbstractButton::focusNextPrevChild(next);
}

void CaptionButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  if (!isEnabled()) painter.setOpacity(kDisabledOpacity);
  const QPen line = hasFocus() ? QPen(CaptionAppearance::accent, kRing) : QPen(colors_.edge);
  const double inset = line.widthF() / 2;
  painter.setPen(line);
  painter.setBrush(underMouse() || isDown() ? colors_.raisedHover : colors_.raised);
  const double corner = height() / 2.0 - inset;
  painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), corner, corner);
  painter.setPen(CaptionAppearance::text);
  painter.setFont(font());
  const QString shown = fontMetrics().elidedText(text(), Qt::ElideRight, width() - kPadding);
  painter.drawText(rect(), Qt::AlignCenter, shown);
}

}  // namespace velun
