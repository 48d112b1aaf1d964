// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/panel_edge.h"

#include "ui/common/accessible_role.h"

#include <QMouseEvent>

namespace velun {

namespace {

constexpr int kThickness = 5;
constexpr int kCorner = 14;

Qt::CursorShape cursorFor(Qt::Edges edges) {
  if (edges == (Qt::TopEdge | Qt::LeftEdge) || edges == (Qt::BottomEdge | Qt::RightEdge)) {
    return Qt::SizeFDiagCursor;
  }
  if (edges == (Qt::TopEdge | Qt::RightEdge) || edges == (Qt::BottomEdge | Qt::LeftEdge)) {
    return Qt::SizeBDiagCursor;
  }
  return edges & (Qt::LeftEdge | Qt::RightEdge) ? Qt::SizeHorCursor : Qt::SizeVerCursor;
}

}  // namespace

PanelEdge::PanelEdge(Qt::Edges edges, QWidget* panel) : QWidget(panel), edges_(edges) {
  hideFromAccessibility(*this);
}

/// The edges that can be moved: those above and below belong to no panel of fixed height.
Qt::Edges PanelEdge::movableEdges() const {
  const QWidget& panel = *parentWidget();
  const bool isHeightFixed = panel.minimumHeight() == panel.maximumHeight();
  return isHeightFixed ? edges_ & (Qt::LeftEdge | Qt::RightEdge) : edges_;
}

void PanelEdge::enterEvent(QEnterEvent*) {
  setCursor(movableEdges() ? cursorFor(movableEdges()) : Qt::ArrowCursor);
}

void PanelEdge::place() {
  const QRect panel = parentWidget()->rect();
  const bool horizontal = edges_ & (Qt::LeftEdge | Qt::RightEdge);
  const bool vertical = edges_ & (Qt::TopEdge | Qt::BottomEdge);
  const bool corner = horizontal && vertical;
  QRect strip(0, 0, horizontal ? (corner ? kCorner : kThickness) : panel.width() - 2 * kCorner,
              vertical ? (corner ? kCorner : kThickness) : panel.height() - 2 * kCorner);
  if (!horizontal) strip.moveLeft(kCorner);
  if (!vertical) strip.moveTop(kCorner);
  if (edges_ & Qt::RightEdge) strip.moveRight(panel.right());
  if (edges_ & Qt::BottomEdge) strip.moveBottom(panel.bottom());
  setGeometry(strip);
  if (corner) {
    // An L shape along both sides, so that controls inside the corner can be clicked.
    QRegion angle(rect());
    const QPoint inward(edges_ & Qt::LeftEdge ? kThickness : -kThickness,
                        edges_ & Qt::TopEdge ? kThickness : -kThickness);
    setMask(angle - QRegion(rect().translated(inward)));
  }
}

void PanelEdge::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && movableEdges()) {
    Q_EMIT pressed(movableEdges(), event->globalPosition().toPoint());
  }
}

void PanelEdge::mouseMoveEvent(QMouseEvent* event) {
  Q_EMIT moved(event->globalPosition().toPoint());
}

void PanelEdge::mouseReleaseEvent(QMouseEvent*) {
  Q_EMIT released();
}

}  // namespace velun
