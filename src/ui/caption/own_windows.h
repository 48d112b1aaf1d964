// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

namespace velun {

/// The program's ordinary windows, which must be readable although the caption panel is above
/// ordinary windows. Places a window beside the panel when it is first shown, if there is room, and
/// reports when the window in front overlaps the panel. Main thread.
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

  /// Whether the window in front overlaps the panel.
  bool overlapPanel() const;

  /// Moves the window in front above the other windows of its level.
  void raiseFront();

  bool eventFilter(QObject* watched, QEvent* event) override;

 Q_SIGNALS:
  /// The window in front changed, or its frame.
  void frontChanged();

 private:
  void setFront(QWidget* window);
  void place(QWidget& window) const;

  const QWidget& panel_;
  QPointer<QWidget> front_;
};

}  // namespace velun
