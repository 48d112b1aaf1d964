// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/layer_surface.h"

#include "platform/desktop/linux/layer_placement.h"
#include "platform/desktop/linux/wayland_connection.h"

#include <QGuiApplication>
#include <QWindow>
#include <wayland-client.h>
#include <wlr-layer-shell-unstable-v1-client.h>

namespace velun {

namespace {

/// What compositors' rules can know the panel by: a layer surface has no title.
constexpr auto kNamespace = "velun-captions";
/// Margins count from the output's corner, not from the desktop's own bars.
constexpr int kIgnoreBars = -1;

QScreen* screenFor(const QRect& frame) {
  const QList<QScreen*> screens = QGuiApplication::screens();
  QList<QRect> outputs;
  for (const QScreen* screen : screens) outputs << screen->geometry();
  const qsizetype index = outputFor(frame, outputs);
  return index < 0 ? nullptr : screens.at(index);
}

}  // namespace

LayerSurface::LayerSurface(const WaylandConnection& connection, QWindow& window, const QRect& frame)
    : connection_(connection), window_(window), screen_(screenFor(frame)) {
  if (screen_) outputFrame_ = screen_->geometry();
  create();
  setKeyboard(false);
  setFrame(frame);
  connection_.commit(window_);
  connection_.await(isConfigured_);
  connection_.leaveToQt(surface_);
}

void LayerSurface::create() {
  const auto shell = connection_.ownQueued(connection_.layerShell());
  surface_ = zwlr_layer_shell_v1_get_layer_surface(
      shell.get(), WaylandConnection::surfaceOf(window_), WaylandConnection::outputOf(screen_),
      ZWLR_LAYER_SHELL_V1_LAYER_OVERLAY, kNamespace);
  static const zwlr_layer_surface_v1_listener listener = {
      [](void* data, zwlr_layer_surface_v1* surface, std::uint32_t serial, std::uint32_t,
         std::uint32_t) {
        static_cast<LayerSurface*>(data)->isConfigured_ = true;
        zwlr_layer_surface_v1_ack_configure(surface, serial);
      },
      [](void* data, zwlr_layer_surface_v1*) {
        auto& self = *static_cast<LayerSurface*>(data);
        self.isClosed_ = true;
        // Later: receivers delete this object.
        QMetaObject::invokeMethod(&self, &LayerSurface::closed, Qt::QueuedConnection);
      },
  };
  zwlr_layer_surface_v1_add_listener(surface_, &listener, this);
  zwlr_layer_surface_v1_set_anchor(
      surface_, ZWLR_LAYER_SURFACE_V1_ANCHOR_TOP | ZWLR_LAYER_SURFACE_V1_ANCHOR_LEFT);
  zwlr_layer_surface_v1_set_exclusive_zone(surface_, kIgnoreBars);
}

LayerSurface::~LayerSurface() {
  zwlr_layer_surface_v1_destroy(surface_);
}

void LayerSurface::setFrame(const QRect& frame) {
  if (frame == frame_ || frame.isEmpty()) return;
  const bool isResized = frame.size() != frame_.size();
  frame_ = frame;
  if (isResized) {
    zwlr_layer_surface_v1_set_size(surface_, static_cast<std::uint32_t>(frame.width()),
                                   static_cast<std::uint32_t>(frame.height()));
  }
  const QMargins margins = marginsOn(outputFrame_, frame);
  zwlr_layer_surface_v1_set_margin(surface_, margins.top(), margins.right(), margins.bottom(),
                                   margins.left());
  // The next drawing commits a new size together with the picture of that size.
  if (!isResized && isConfigured_) connection_.commit(window_);
}

void LayerSurface::setKeyboard(bool wanted) {
  // Without "on demand", KWin gives the keyboard by a click all the same.
  const bool onDemand = wanted && connection_.givesKeyboardOnDemand();
  zwlr_layer_surface_v1_set_keyboard_interactivity(
      surface_, onDemand ? ZWLR_LAYER_SURFACE_V1_KEYBOARD_INTERACTIVITY_ON_DEMAND
                         : ZWLR_LAYER_SURFACE_V1_KEYBOARD_INTERACTIVITY_NONE);
  if (isConfigured_) connection_.commit(window_);
}

void LayerSurface::setClickThrough(bool isThrough) {
  wl_surface* surface = WaylandConnection::surfaceOf(window_);
  if (!surface) return;
  wl_region* nothing = isThrough ? wl_compositor_create_region(connection_.compositor()) : nullptr;
  wl_surface_set_input_region(surface, nothing);
  if (nothing) wl_region_destroy(nothing);
  connection_.commit(window_);
}

}  // namespace velun
