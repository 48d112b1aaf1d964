// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/header_button.h"

#include "ui/caption/caption_appearance.h"
#include "ui/caption/transcript_formats.h"
#include "ui/common/symbol.h"

#include <QFontMetrics>
#include <QMenu>
#include <QPainter>
#include <QPainterPath>

namespace velun {

namespace {

constexpr int kSide = 32;
constexpr int kSymbolSize = 18;
constexpr int kMarkSize = 10;
constexpr int kGap = 5;
constexpr double kCorner = 7;
constexpr double kCaptionSize = 12;
constexpr double kDisabledOpacity = 0.35;
/// Of the white ground of a filled button.
constexpr double kFilled = 0.13;

}  // namespace

HeaderButton::HeaderButton(QWidget* parent, Shape shape) : PanelButton(parent), shape_(shape) {
  setFont(systemFont(kCaptionSize));
  setFocusPolicy(Qt::TabFocus);
  setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
}

void HeaderButton::setSymbol(const QString& name) {
  symbol_ = name;
  update();
}

void HeaderButton::setLabel(const QString& label, const QString& help) {
  // Qt tells screen readers of the same name again.
  if (accessibleName() != label) setAccessibleName(label);
  setToolTip(help.isEmpty() ? label : help);
}

void HeaderButton::setCaption(const QString& caption) {
  if (caption_ == caption) return;
  caption_ = caption;
  updateGeometry();
  update();
}

QSize HeaderButton::sizeHint() const {
  int width = kSide;
  if (!caption_.isEmpty()) width += kGap + fontMetrics().horizontalAdvance(caption_) + 2;
  if (menu() && shape_ == Shape::plain) width += kMarkSize;
  return QSize(width, kSide);
}

QSize HeaderButton::minimumSizeHint() const {
  return QSize(kSide + (menu() ? kMarkSize : 0), kSide);
}

QRect HeaderButton::symbolRect() const {
  return QRect((kSide - kSymbolSize) / 2, (height() - kSymbolSize) / 2, kSymbolSize, kSymbolSize);
}

bool HeaderButton::focusNextPrevChild(bool next) {
  // Qt calls this when the button is disabled. A screen reader would otherwise announce another
  // control at every start and stop. Tab and the arrow keys reach the header instead.
  return !isEnabled() || PanelButton::focusNextPrevChild(next);
}

void HeaderButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  if (!isEnabled()) painter.setOpacity(kDisabledOpacity);

  const bool filled = shape_ == Shape::filled;
  paintGround(painter, filled ? kFilled : 0, filled ? kSide / 2.0 : kCorner);

  const qreal ratio = devicePixelRatioF();
  painter.drawPixmap(symbolRect().topLeft(),
                     symbolPixmap(symbol_, kSymbolSize, CaptionAppearance::symbol, ratio));
  const bool marked = menu() && !filled;
  if (!caption_.isEmpty()) {
    const int left = symbolRect().right() + kGap + 2;
    const int right = width() - (marked ? kMarkSize + 6 : 6);
    painter.setPen(CaptionAppearance::symbol);
    painter.drawText(QRect(left, 0, right - left, height()), Qt::AlignVCenter | Qt::AlignLeft,
                     fontMetrics().elidedText(caption_, Qt::ElideRight, right - left));
  }
  if (marked) {
    painter.drawPixmap(QPoint(width() - kMarkSize - 5, (height() - kMarkSize) / 2 + 1),
                       symbolPixmap(QStringLiteral("chevron.down"), kMarkSize,
                                    CaptionAppearance::secondaryText, ratio));
  }
}

}  // namespace velun
