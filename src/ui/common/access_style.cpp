// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/access_style.h"

#include <QPainter>
#include <QStyleOption>

namespace velun {

namespace {

constexpr double kLine = 1;
constexpr double kFocusLine = 2;
constexpr double kCorner = 2;

void drawOutline(QPainter& painter, const QRect& rect, const QColor& color, double width) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(color, width));
  painter.setBrush(Qt::NoBrush);
  const double inset = width / 2;
  painter.drawRoundedRect(QRectF(rect).adjusted(inset, inset, -inset, -inset), kCorner, kCorner);
  painter.restore();
}

void drawOutline(QPainter& painter, const QStyleOption& option) {
  const bool hasKeyboard =
      option.state.testFlag(QStyle::State_HasFocus) && option.state.testFlag(QStyle::State_Enabled);
  const QPalette::ColorRole role = hasKeyboard ? QPalette::Highlight : QPalette::WindowText;
  drawOutline(painter, option.rect, option.palette.color(role), hasKeyboard ? kFocusLine : kLine);
}

}  // namespace

int AccessStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                           QStyleHintReturn* returned) const {
  if (reducedMotion_ && hint == SH_Widget_Animation_Duration) return 0;
  return QProxyStyle::styleHint(hint, option, widget, returned);
}

void AccessStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                                QPainter* painter, const QWidget* widget) const {
  if (outlines_ && element == PE_FrameFocusRect) {
    drawOutline(*painter, option->rect, option->palette.color(QPalette::Highlight), kFocusLine);
    return;
  }
  QProxyStyle::drawPrimitive(element, option, painter, widget);
  if (!outlines_) return;
  switch (element) {
    case PE_PanelButtonCommand:
    case PE_FrameLineEdit:
    case PE_IndicatorCheckBox:
    case PE_FrameMenu:
    case PE_PanelTipLabel:
      drawOutline(*painter, *option);
      break;
    default:
      break;
  }
}

void AccessStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                     QPainter* painter, const QWidget* widget) const {
  QProxyStyle::drawComplexControl(control, option, painter, widget);
  if (outlines_ && control == CC_ComboBox) drawOutline(*painter, *option);
}

}  // namespace velun
