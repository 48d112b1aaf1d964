// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/x11_selection_watch.h"

#include "platform/desktop/linux/x11_display.h"

#include <QCoreApplication>
#include <xcb/xfixes.h>

namespace velun {

X11SelectionWatch::X11SelectionWatch(xcb_connection_t* connection, std::string_view selection)
    : selection_(atomNamed(connection, selection)) {
  const auto* fixes = xcb_get_extension_data(connection, &xcb_xfixes_id);
  if (!fixes || !fixes->present) return;
  owned(xcb_xfixes_query_version_reply(connection, xcb_xfixes_query_version(connection, 5, 0),
                                       nullptr));
  selectionEvent_ = std::uint8_t(fixes->first_event + XCB_XFIXES_SELECTION_NOTIFY);
  xcb_xfixes_select_selection_input(connection, rootWindow(connection), selection_,
                                    XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                        XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                        XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
  xcb_flush(connection);
  QCoreApplication::instance()->installNativeEventFilter(this);
}

X11SelectionWatch::~X11SelectionWatch() {
  if (selectionEvent_) QCoreApplication::instance()->removeNativeEventFilter(this);
}

bool X11SelectionWatch::nativeEventFilter(const QByteArray& type, void* message, qintptr*) {
  if (type != "xcb_generic_event_t") return false;
  const auto* event = static_cast<xcb_generic_event_t*>(message);
  if ((event->response_type & 0x7f) != selectionEvent_) return false;
  const auto* change = reinterpret_cast<const xcb_xfixes_selection_notify_event_t*>(event);
  if (change->selection != selection_) return false;
  QMetaObject::invokeMethod(this, &X11SelectionWatch::changed, Qt::QueuedConnection);
  return false;
}

}  // namespace velun
