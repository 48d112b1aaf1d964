// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/x11_display.h"

#include <QGuiApplication>
#include <QScreen>

namespace velun {

xcb_connection_t* x11Connection() {
  const auto* x11 =
      qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
  return x11 ? x11->connection() : nullptr;
}

xcb_window_t rootWindow(xcb_connection_t* connection) {
  return xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
}

bool isXWayland(xcb_connection_t* connection) {
  constexpr std::string_view extension = "XWAYLAND";
  const auto cookie =
      xcb_query_extension(connection, std::uint16_t(extension.size()), extension.data());
  const auto reply = owned(xcb_query_extension_reply(connection, cookie, nullptr));
  if (reply && reply->present) return true;
  // Before version 23 it has no such extension, but its outputs are called XWAYLAND0 and so on.
  const QScreen* screen = QGuiApplication::primaryScreen();
  return screen && screen->name().startsWith(QLatin1String("XWAYLAND"));
}

xcb_atom_t atomNamed(xcb_connection_t* connection, std::string_view name) {
  const auto cookie = xcb_intern_atom(connection, 0, std::uint16_t(name.size()), name.data());
  const auto reply = owned(xcb_intern_atom_reply(connection, cookie, nullptr));
  return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

}  // namespace velun
