// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/x11_display.h"

#include <QGuiApplication>

namespace velun {

namespace {

constexpr std::uint32_t kLongest = 1024;

}  // namespace

xcb_connection_t* x11Connection() {
  const auto* x11 =
      qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
  return x11 ? x11->connection() : nullptr;
}

xcb_window_t rootWindow(xcb_connection_t* connection) {
  return xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
}

xcb_atom_t atomNamed(xcb_connection_t* connection, const std::string& name) {
  const auto cookie = xcb_intern_atom(connection, 0, std::uint16_t(name.size()), name.data());
  const auto reply = owned(xcb_intern_atom_reply(connection, cookie, nullptr));
  return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

std::vector<std::uint32_t> longProperty(xcb_connection_t* connection, xcb_window_t window,
                                        xcb_atom_t property) {
  const auto cookie =
      xcb_get_property(connection, 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, kLongest);
  const auto reply = owned(xcb_get_property_reply(connection, cookie, nullptr));
  if (!reply || reply->format != 32) return {};
  const auto* values = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
  return {values, values + reply->value_len};
}

}  // namespace velun
