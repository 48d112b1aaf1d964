// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdlib>
#include <memory>
#include <string_view>
#include <xcb/xcb.h>

namespace velun {

/// Takes ownership of an xcb reply, which may be null.
template <class T>
std::unique_ptr<T, decltype(&std::free)> owned(T* reply) {
  return {reply, &std::free};
}

/// Qt's connection to the X server; null where Qt does not run on X.
xcb_connection_t* x11Connection();

xcb_window_t rootWindow(xcb_connection_t* connection);

/// Whether the X server is Xwayland, whose clients cannot read the windows of Wayland programs.
bool isXWayland(xcb_connection_t* connection);

/// The atom of that name, created if there is none; XCB_ATOM_NONE when the server does not answer.
xcb_atom_t atomNamed(xcb_connection_t* connection, std::string_view name);

}  // namespace velun
