// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPoint>
#include <QRect>

class QWidget;

namespace velun {

/// Moves a window, or resizes it at some of its edges, with the mouse: through the window manager
/// where that is supported, otherwise by following the pointer.
class PanelDrag final {
 public:
  /// Starts at a press of the left button. Without edges the window is moved.
  void begin(QWidget& window, Qt::Edges edges, const QPoint& globalPosition, bool byManager);
  /// Follows the pointer, unless the window manager moves the window.
  void follow(QWidget& window, const QPoint& globalPosition) const;
  void end() { following_ = false; }

 private:
  bool following_ = false;
  Qt::Edges edges_;
  QPoint start_;
  QRect frame_;
};

}  // namespace velun
