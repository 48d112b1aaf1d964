// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPoint>
#include <QRect>

class QWidget;

namespace velun {

/// Moves a window, or resizes it at some of its edges, with the mouse: through the window manager
/// where it does that, else by following the pointer.
class PanelDrag final {
 public:
  /// Begins at a press of the left button. No edges: the window is moved.
  void begin(QWidget& window, Qt::Edges edges, const QPoint& globalPosition, bool byManager);
  /// Follows the pointer, unless the window manager does.
  void follow(QWidget& window, const QPoint& globalPosition) const;
  void end() { following_ = false; }

 private:
  bool following_ = false;
  Qt::Edges edges_;
  QPoint start_;
  QRect frame_;
};

}  // namespace velun
