// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/layer_popup.h"

#include "platform/desktop/linux/wayland_connection.h"

#include <wayland-client.h>
#include <wlr-layer-shell-unstable-v1-client.h>
#include <xdg-shell-client.h>

namespace velun {

LayerPopup::LayerPopup(const WaylandConnection& connection, QWindow& window, const QRect& frame,
                       const Parent& parent, bool grabs)
    : connection_(connection), position_(frame.topLeft()) {
  create(window, frame, parent);
  if (parent.layer) zwlr_layer_surface_v1_get_popup(parent.layer, popup_);
  if (grabs) xdg_popup_grab(popup_, connection_.seat(), connection_.lastSerial());
  connection_.commit(window);
  connection_.await(isConfigured_);
  connection_.leaveToQt(surface_);
  connection_.leaveToQt(popup_);
}

void LayerPopup::create(QWindow& window, const QRect& frame, const Parent& parent) {
  const auto base = connection_.ownQueued(connection_.windowBase());
  xdg_positioner* positioner = xdg_wm_base_create_positioner(base.get());
  xdg_positioner_set_size(positioner, frame.width(), frame.height());
  xdg_positioner_set_anchor_rect(positioner, frame.x(), frame.y(), 1, 1);
  xdg_positioner_set_anchor(positioner, XDG_POSITIONER_ANCHOR_TOP_LEFT);
  xdg_positioner_set_gravity(positioner, XDG_POSITIONER_GRAVITY_BOTTOM_RIGHT);
  xdg_positioner_set_constraint_adjustment(
      positioner,
      XDG_POSITIONER_CONSTRAINT_ADJUSTMENT_SLIDE_X | XDG_POSITIONER_CONSTRAINT_ADJUSTMENT_SLIDE_Y);
  surface_ = xdg_wm_base_get_xdg_surface(base.get(), WaylandConnection::surfaceOf(window));
  static const xdg_surface_listener surfaceListener = {
      [](void* data, xdg_surface* surface, std::uint32_t serial) {
        static_cast<LayerPopup*>(data)->isConfigured_ = true;
        xdg_surface_ack_configure(surface, serial);
      }};
  xdg_surface_add_listener(surface_, &surfaceListener, this);
  popup_ = xdg_surface_get_popup(surface_, parent.popup, positioner);
  xdg_positioner_destroy(positioner);
  static const xdg_popup_listener popupListener = {
      [](void* data, xdg_popup*, std::int32_t x, std::int32_t y, std::int32_t, std::int32_t) {
        static_cast<LayerPopup*>(data)->position_ = {x, y};
      },
      [](void* data, xdg_popup*) {
        // Later: receivers delete this object.
        QMetaObject::invokeMethod(static_cast<LayerPopup*>(data), &LayerPopup::dismissed,
                                  Qt::QueuedConnection);
      },
      [](void*, xdg_popup*, std::uint32_t) {},
  };
  xdg_popup_add_listener(popup_, &popupListener, this);
}

LayerPopup::~LayerPopup() {
  xdg_popup_destroy(popup_);
  xdg_surface_destroy(surface_);
}

}  // namespace velun
