// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QPointer>
#include <QRect>
#include <QScreen>

class QWindow;
struct zwlr_layer_surface_v1;

namespace velun {

class WaylandConnection;

/// Gives the Wayland surface of a window, which Qt has left without a role, a place of its own
/// above all windows, full-screen ones included, on every workspace. Lasts as long as the surface;
/// must be deleted before it. Main thread.
class LayerSurface final : public QObject {
  Q_OBJECT

 public:
  /// The window must have a surface with nothing drawn on it; it can be drawn when this returns.
  LayerSurface(const WaylandConnection& connection, QWindow& window, const QRect& frame);
  ~LayerSurface() override;

  /// Moves and resizes the surface; `frame` is in coordinates of the desktop. Call it before the
  /// content is drawn for a new size: the two become visible together.
  void setFrame(const QRect& frame);
  /// Whether the window has the keyboard. It gets it only while the pointer is over it and after a
  /// click: sway 1.7 otherwise leaves it the keyboard even after clicks elsewhere.
  void setKeyboard(bool wanted);
  /// Whether the pointer goes through to the windows beneath.
  void setClickThrough(bool isThrough);

  zwlr_layer_surface_v1* handle() const { return surface_; }
  /// The surface stays on it for its whole life; null when it has gone.
  QScreen* screen() const { return screen_; }
  /// Whether the compositor has taken the surface off the screen, because its output has gone.
  bool isClosed() const { return isClosed_; }

 Q_SIGNALS:
  void closed();

 private:
  void create();

  const WaylandConnection& connection_;
  QWindow& window_;
  QPointer<QScreen> screen_;
  QRect outputFrame_;
  QRect frame_;
  zwlr_layer_surface_v1* surface_ = nullptr;
  bool isConfigured_ = false;
  bool isClosed_ = false;
};

}  // namespace velun
