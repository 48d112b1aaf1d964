// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

namespace velun {

/// The program's ordinary windows, which must be readable although the caption panel is above
/// ordinary windows. Places a window beside the panel when it is first shown, if there is room, and
/// reports when one of them overlaps the panel. Main thread.
///
/// The window in front is the one that was shown or activated last, until it is hidden or another
/// program is activated. The panel can be activated meanwhile, and then is above it.
class OwnWindows final : public QObject {
  Q_OBJECT

 public:
  /// `panel` must outlive this object.
  explicit OwnWindows(const QWidget& panel);

  /// Adds a window, which may be destroyed at any time.
  void add(QWidget& window);

  /// Whether the program is in front and a window of it overlaps the panel: the window in front, or
  /// one behind it, which its reader has not left.
  bool overlapPanel() const;

  /// Moves the windows that overlap the panel above the other windows of their level, in their
  /// order.
  void raiseOverlapping();

  bool eventFilter(QObject* watched, QEvent* event) override;

 Q_SIGNALS:
  /// The window in front changed, or the frame of a window.
  void frontChanged();

 private:
  void setFront(QWidget* window);
  void place(QWidget& window) const;
  bool overlapsPanel(const QWidget* window) const;

  const QWidget& panel_;
  QPointer<QWidget> front_;
  /// The windows that were in front, in the order of the last time.
  QList<QPointer<QWidget>> stack_;
};

}  // namespace velun
