// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/panel_drag.h"

#include "platform/desktop/desktop_platform.h"

#include <algorithm>
#include <QWidget>
#include <QWindow>

namespace velun {

void PanelDrag::begin(QWidget& window, Qt::Edges edges, const QPoint& globalPosition) {
  QWindow* handle = window.windowHandle();
  const bool byManager = desktop_.capabilities().movesByItself;
  const bool taken =
      byManager && handle && (edges ? handle->startSystemResize(edges) : handle->startSystemMove());
  following_ = !taken;
  byManager_ = taken;
  edges_ = edges;
  start_ = globalPosition;
  frame_ = window.geometry();
  reported_ = !taken && handle && desktop_.followPointer(*handle);
}

bool PanelDrag::end(const QWidget& window) {
  // Which reports for the last time.
  if (reported_) desktop_.stopFollowingPointer();
  const bool wasDragging = following_ || byManager_;
  following_ = reported_ = false;
  byManager_ = false;
  return wasDragging && !edges_ && window.pos() != frame_.topLeft();
}

void PanelDrag::follow(QWidget& window, const QPoint& globalPosition) const {
  if (following_ && !reported_) apply(window, globalPosition - start_);
}

void PanelDrag::followBy(QWidget& window, const QPointF& by) {
  if (reported_) apply(window, by.toPoint());
}

void PanelDrag::apply(QWidget& window, const QPoint& by) const {
  if (!edges_) {
    window.move(frame_.topLeft() + by);
    return;
  }
  const QSize least = window.minimumSize();
  QRect frame = frame_;
  if (edges_ & Qt::LeftEdge) {
    frame.setLeft(std::min(frame.left() + by.x(), frame.right() + 1 - least.width()));
  }
  if (edges_ & Qt::TopEdge) {
    frame.setTop(std::min(frame.top() + by.y(), frame.bottom() + 1 - least.height()));
  }
  if (edges_ & Qt::RightEdge) frame.setWidth(std::max(frame.width() + by.x(), least.width()));
  if (edges_ & Qt::BottomEdge) frame.setHeight(std::max(frame.height() + by.y(), least.height()));
  window.setGeometry(frame);
}

}  // namespace velun
