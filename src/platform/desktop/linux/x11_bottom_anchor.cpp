// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/x11_bottom_anchor.h"

#include <QCoreApplication>
#include <QWindow>
#include <utility>

namespace velun {

X11BottomAnchor::X11BottomAnchor(xcb_connection_t* connection) : connection_(connection) {
  QCoreApplication::instance()->installNativeEventFilter(this);
}

X11BottomAnchor::~X11BottomAnchor() {
  QCoreApplication::instance()->removeNativeEventFilter(this);
}

void X11BottomAnchor::keep(const QWindow& window) {
  const auto id = static_cast<xcb_window_t>(window.winId());
  sizes_.insert(id, QSize());
  const std::uint32_t gravity = XCB_GRAVITY_SOUTH_WEST;
  xcb_change_window_attributes(connection_, id, XCB_CW_BIT_GRAVITY, &gravity);
  xcb_flush(connection_);
}

bool X11BottomAnchor::nativeEventFilter(const QByteArray& type, void* message, qintptr*) {
  if (type != "xcb_generic_event_t") return false;
  const auto* event = static_cast<xcb_generic_event_t*>(message);
  const int kind = event->response_type & 0x7f;
  if (kind == XCB_DESTROY_NOTIFY) {
    sizes_.remove(reinterpret_cast<const xcb_destroy_notify_event_t*>(event)->window);
  } else if (kind == XCB_CONFIGURE_NOTIFY) {
    const auto* change = reinterpret_cast<const xcb_configure_notify_event_t*>(event);
    const auto known = sizes_.find(change->window);
    if (known == sizes_.end()) return false;
    const QSize size(change->width, change->height);
    // Qt paints a new size as soon as it has requested it. Anything painted before the server
    // applied that size was moved along with the old picture, so have the server expose the whole
    // window.
    if (std::exchange(*known, size) != size) {
      xcb_clear_area(connection_, true, change->window, 0, 0, 0, 0);
      xcb_flush(connection_);
    }
  }
  return false;
}

}  // namespace velun
