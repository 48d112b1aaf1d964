// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPoint>
#include <QPointF>
#include <QRect>

class QWidget;

namespace velun {

class DesktopPlatform;

/// Moves a window, or resizes it at some of its edges, with the mouse: through the window manager
/// where that is supported, otherwise by following the pointer.
class PanelDrag final {
 public:
  /// `desktop` must outlive this object.
  explicit PanelDrag(DesktopPlatform& desktop) : desktop_(desktop) {}

  /// Starts at a press of the left button. Without edges the window is moved.
  void begin(QWidget& window, Qt::Edges edges, const QPoint& globalPosition);
  /// Follows a mouse event, unless something else moves the window.
  void follow(QWidget& window, const QPoint& globalPosition) const;
  /// Follows the pointer's reported motion since the press.
  void followBy(QWidget& window, const QPointF& by);
  bool isFollowing() const { return following_; }
  /// Whether the window manager may still be moving the window.
  bool isByManager() const { return byManager_; }
  /// Returns whether the window was moved, not resized.
  bool end(const QWidget& window);

 private:
  void apply(QWidget& window, const QPoint& by) const;

  DesktopPlatform& desktop_;
  bool following_ = false;
  /// The desktop reports the pointer's motion.
  bool reported_ = false;
  bool byManager_ = false;
  Qt::Edges edges_;
  QPoint start_;
  QRect frame_;
};

}  // namespace velun
