// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop/linux/pointer_motion.h"
#include "platform/desktop/linux/wayland_connection.h"
#include "platform/foundation/clock.h"

#include <map>
#include <memory>
#include <QHash>
#include <QObject>
#include <QRect>

class QEvent;
class QWindow;

namespace velun {

class LayerPopup;
class LayerSurface;

/// Shows windows of this program as layer surfaces, with the menus and tool tips over them, where
/// Qt runs on Wayland. Main thread.
///
/// Qt leaves the surface of a window that has Qt::BypassWindowManagerHint without a role when
/// QT_WAYLAND_USE_BYPASSWINDOWMANAGERHINT is set. Such a surface is given its role here, between
/// its creation and the first drawing on it.
class LayerWindows final : public QObject {
  Q_OBJECT

 public:
  /// Null unless Qt runs on Wayland. `clock` must outlive the result.
  static std::unique_ptr<LayerWindows> open(Clock& clock);
  ~LayerWindows() override;

  /// Whether the compositor and Qt can show layer surfaces.
  bool isPossible() const { return isPossible_; }

  /// Sets whether the window, which is hidden and has its native window, is a layer surface when it
  /// is next shown, or an ordinary window.
  void prepare(QWindow& window, bool asLayer);
  /// Whether the window was last prepared to be a layer surface.
  bool isLayer(const QWindow& window) const;
  /// Tells the new frame of a prepared window before its content is drawn for it.
  void setFrame(QWindow& window, const QRect& frame);
  void setClickThrough(QWindow& window, bool isThrough);
  /// Whether the pointer is over a prepared window.
  bool isPointerOver(const QWindow& window) const;

  /// Reports the pointer's motion until stopFollowing(). Returns false where that is not possible
  /// or not necessary: the window is not a layer surface.
  bool followPointer(const QWindow& window);
  void stopFollowing();

 Q_SIGNALS:
  /// By how many points since the button went down.
  void pointerMoved(const QPointF& by);
  /// A layer surface no longer lies on its output. It stays with that one until the window is
  /// hidden and shown again.
  void showAgainRequired();

 private:
  struct Entry;

  LayerWindows(std::unique_ptr<WaylandConnection> connection, Clock& clock);
  bool eventFilter(QObject* watched, QEvent* event) override;
  void handle(QWindow& window, QEvent& event);
  void beforeShow(QWindow& window);
  void watchSurface(QWindow& window);
  void attach(QWindow& window);
  void detach(QWindow& window);
  void attachLayer(QWindow& window, Entry& entry);
  void attachPopup(QWindow& window, Entry& entry);
  void closePopupsOver(const QWindow& window);
  bool hasPopup(const QWindow& window) const;
  /// Unless the pointer or a popup is over the window.
  void releaseKeyboard(const QWindow& window, const Entry& entry) const;
  void layerClosed();
  /// Asks for another showing if a layer surface is not on its output. One that was `closed` counts
  /// as such even if its output is still there.
  void checkOutputs(bool closed = false);
  Entry* entryOf(const QWindow* window);
  const Entry* entryOf(const QWindow* window) const;
  /// The shown layer surface or popup that a menu or a tool tip belongs to; null if there is none.
  QWindow* parentOf(const QWindow& popup) const;
  Q_SLOT void surfaceCreated();
  Q_SLOT void surfaceDestroyed();

  std::unique_ptr<WaylandConnection> connection_;
  PointerMotion motion_{*connection_};
  Clock& clock_;
  std::unique_ptr<ScheduledCall> closing_;
  std::unique_ptr<ScheduledCall> releasing_;
  bool isPossible_ = false;
  std::map<const QWindow*, Entry> entries_;
  /// Qt's objects behind the windows.
  QHash<QObject*, QWindow*> watched_;
};

}  // namespace velun
