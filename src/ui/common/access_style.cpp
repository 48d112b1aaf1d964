// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/access_style.h"

#include <QAbstractScrollArea>
#include <QPainter>
#include <QStyleOption>

namespace velun {

namespace {

constexpr double kLine = 1;
constexpr double kFocusLine = 2;
constexpr int kInset = 2;
constexpr double kCorner = 2;
constexpr float kSoftness = 0.5F;
/// A selection's colour is too dark for a line in a dark window.
constexpr QPalette::ColorRole kFocusRole = QPalette::Link;

void drawRounded(QPainter& painter, const QRect& rect, const QColor& color, double width) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(color, width));
  painter.setBrush(Qt::NoBrush);
  const double inset = width / 2;
  painter.drawRoundedRect(QRectF(rect).adjusted(inset, inset, -inset, -inset), kCorner, kCorner);
  painter.restore();
}

/// The links' colour is hardly visible on a selected row, where the ring lies inside.
void drawFocus(QPainter& painter, const QStyleOption& option) {
  const auto* focus = qstyleoption_cast<const QStyleOptionFocusRect*>(&option);
  const bool isSelected =
      focus && focus->backgroundColor == option.palette.color(QPalette::Highlight);
  const QColor color = option.palette.color(isSelected ? QPalette::HighlightedText : kFocusRole);
  const int inset = isSelected ? kInset : 0;
  drawRounded(painter, option.rect.adjusted(inset, inset, -inset, -inset), color, kFocusLine);
}

/// Of a text or a list; other frames only group things.
bool isOfScrollArea(const QWidget* widget) {
  const auto* area = qobject_cast<const QAbstractScrollArea*>(widget);
  return area && area->frameShape() != QFrame::NoFrame;
}

}  // namespace

void AccessStyle::drawOutline(QPainter& painter, const QStyleOption& option) const {
  const bool hasKeyboard =
      option.state.testFlag(QStyle::State_HasFocus) && option.state.testFlag(QStyle::State_Enabled);
  if (!hasKeyboard && outlines_ == Outlines::none) return;
  QColor color = option.palette.color(hasKeyboard ? kFocusRole : QPalette::WindowText);
  if (!hasKeyboard && outlines_ == Outlines::soft) color.setAlphaF(kSoftness);
  drawRounded(painter, option.rect, color, hasKeyboard ? kFocusLine : kLine);
}

int AccessStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                           QStyleHintReturn* returned) const {
  if (reducedMotion_ && hint == SH_Widget_Animation_Duration) return 0;
  return QProxyStyle::styleHint(hint, option, widget, returned);
}

void AccessStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                                QPainter* painter, const QWidget* widget) const {
  if (element == PE_FrameFocusRect) {
    drawFocus(*painter, *option);
    return;
  }
  QProxyStyle::drawPrimitive(element, option, painter, widget);
  switch (element) {
    case PE_PanelButtonCommand:
    case PE_FrameLineEdit:
    case PE_IndicatorCheckBox:
    case PE_FrameMenu:
    case PE_PanelTipLabel:
      drawOutline(*painter, *option);
      break;
    case PE_Frame:
      if (isOfScrollArea(widget)) drawOutline(*painter, *option);
      break;
    default:
      break;
  }
}

void AccessStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                     QPainter* painter, const QWidget* widget) const {
  QProxyStyle::drawComplexControl(control, option, painter, widget);
  if (control == CC_ComboBox) drawOutline(*painter, *option);
}

QRect AccessStyle::subElementRect(SubElement element, const QStyleOption* option,
                                  const QWidget* widget) const {
  // The whole row, not its text alone.
  if (element == SE_ItemViewItemFocusRect) return option->rect;
  return QProxyStyle::subElementRect(element, option, widget);
}

}  // namespace velun
