// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QPoint>
#include <QRect>

class QWindow;
struct xdg_popup;
struct xdg_surface;
struct zwlr_layer_surface_v1;

namespace velun {

class WaylandConnection;

/// Gives the Wayland surface of a menu or a tool tip, which Qt has left without a role, its place
/// over a layer surface, or over another popup there. Lasts as long as the surface; must be deleted
/// before it and before its parent. Main thread.
class LayerPopup final : public QObject {
  Q_OBJECT

 public:
  /// What a popup lies over: one of the two is null.
  struct Parent {
    zwlr_layer_surface_v1* layer = nullptr;
    xdg_surface* popup = nullptr;
  };

  /// `frame` is relative to the parent. A popup that `grabs` gets the keyboard, and clicks
  /// elsewhere dismiss it. The window can be drawn when this returns.
  LayerPopup(const WaylandConnection& connection, QWindow& window, const QRect& frame,
             const Parent& parent, bool grabs);
  ~LayerPopup() override;

  xdg_surface* surface() const { return surface_; }
  /// Where the compositor has put it, relative to the parent.
  QPoint position() const { return position_; }

 Q_SIGNALS:
  /// The user has clicked elsewhere.
  void dismissed();

 private:
  void create(QWindow& window, const QRect& frame, const Parent& parent);

  const WaylandConnection& connection_;
  QPoint position_;
  xdg_surface* surface_ = nullptr;
  xdg_popup* popup_ = nullptr;
  bool isConfigured_ = false;
};

}  // namespace velun
