// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/panel_button.h"

#include "ui/caption/caption_appearance.h"

#include <QCursor>
#include <QMenu>
#include <QPainter>
#include <QPointer>

namespace velun {

namespace {

constexpr double kPressed = 0.18;
constexpr double kHovered = 0.10;
constexpr double kRing = 2;

}  // namespace

PanelButton::PanelButton(QWidget* parent) : QToolButton(parent) {
  setAttribute(Qt::WA_Hover);
}

void PanelButton::setEdge(const QColor& color) {
  edge_ = color;
  update();
}

void PanelButton::mousePressEvent(QMouseEvent* event) {
  const QPointer<PanelButton> self(this);
  // Returns when the menu is closed, with the pointer elsewhere and no event that says so.
  QToolButton::mousePressEvent(event);
  if (!self || !menu() || rect().contains(mapFromGlobal(QCursor::pos()))) return;
  setAttribute(Qt::WA_UnderMouse, false);
  update();
}

void PanelButton::paintGround(QPainter& painter, double raised, double corner) const {
  const bool isPressed = isDown() || (menu() && menu()->isVisible());
  const double opacity = raised + (isPressed                     ? kPressed
                                   : underMouse() && isEnabled() ? kHovered
                                                                 : 0.0);
  if (opacity > 0) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor::fromRgbF(1, 1, 1, static_cast<float>(opacity)));
    painter.drawRoundedRect(QRectF(rect()), corner, corner);
  }
  const QPen line = hasFocus() ? QPen(CaptionAppearance::accent, kRing) : QPen(edge_);
  const double inset = line.widthF() / 2;
  painter.setPen(line);
  painter.setBrush(Qt::NoBrush);
  painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), corner - inset,
                          corner - inset);
}

}  // namespace velun
