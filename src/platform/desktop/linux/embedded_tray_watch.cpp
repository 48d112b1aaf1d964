// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/embedded_tray_watch.h"

#include "platform/desktop/linux/x11_display.h"

#include <QCoreApplication>
#include <xcb/xfixes.h>

namespace velun {

EmbeddedTrayWatch::EmbeddedTrayWatch(std::function<void()> onArrival)
    : onArrival_(std::move(onArrival)), connection_(x11Connection()) {
  if (!connection_) return;
  selection_ = atomNamed(connection_, "_NET_SYSTEM_TRAY_S0");
  colours_ = atomNamed(connection_, "_NET_SYSTEM_TRAY_COLORS");
  const auto* fixes = xcb_get_extension_data(connection_, &xcb_xfixes_id);
  if (!fixes || !fixes->present) return;
  owned(xcb_xfixes_query_version_reply(connection_, xcb_xfixes_query_version(connection_, 5, 0),
                                       nullptr));
  selectionEvent_ = std::uint8_t(fixes->first_event + XCB_XFIXES_SELECTION_NOTIFY);
  xcb_xfixes_select_selection_input(connection_, rootWindow(connection_), selection_,
                                    XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER);
  xcb_flush(connection_);
  QCoreApplication::instance()->installNativeEventFilter(this);
}

EmbeddedTrayWatch::~EmbeddedTrayWatch() {
  stopWatching();
}

void EmbeddedTrayWatch::stopWatching() {
  if (!selectionEvent_) return;
  selectionEvent_ = 0;
  QCoreApplication::instance()->removeNativeEventFilter(this);
}

xcb_window_t EmbeddedTrayWatch::owner() const {
  if (!connection_) return XCB_WINDOW_NONE;
  const auto reply = owned(xcb_get_selection_owner_reply(
      connection_, xcb_get_selection_owner(connection_, selection_), nullptr));
  return reply ? reply->owner : xcb_window_t(XCB_WINDOW_NONE);
}

std::optional<std::uint32_t> EmbeddedTrayWatch::foreground() const {
  const xcb_window_t tray = owner();
  if (tray == XCB_WINDOW_NONE) return std::nullopt;
  const auto reply = owned(xcb_get_property_reply(
      connection_, xcb_get_property(connection_, 0, tray, colours_, XCB_ATOM_CARDINAL, 0, 3),
      nullptr));
  // Red, green and blue, 0 to 65535, of the icons' normal colour; three more colours follow.
  if (!reply || reply->format != 32 || reply->value_len < 3) return std::nullopt;
  const auto* channel = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
  return (channel[0] >> 8 & 0xff) << 16 | (channel[1] >> 8 & 0xff) << 8 | (channel[2] >> 8 & 0xff);
}

bool EmbeddedTrayWatch::nativeEventFilter(const QByteArray& type, void* message, qintptr*) {
  if (type != "xcb_generic_event_t" || !selectionEvent_) return false;
  const auto* event = static_cast<xcb_generic_event_t*>(message);
  if ((event->response_type & 0x7f) != selectionEvent_) return false;
  const auto* change = reinterpret_cast<const xcb_xfixes_selection_notify_event_t*>(event);
  if (change->selection != selection_ || change->owner == XCB_WINDOW_NONE) return false;
  // Not from inside the filter: whoever hears it may create windows.
  QMetaObject::invokeMethod(
      this, [this] { onArrival_(); }, Qt::QueuedConnection);
  return false;
}

}  // namespace velun
