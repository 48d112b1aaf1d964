// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>
#include <xcb/xcb.h>

namespace velun {

template <class T>
using X11Reply = std::unique_ptr<T, decltype(&std::free)>;

/// Takes over what an xcb call gave, which may be null.
template <class T>
X11Reply<T> owned(T* reply) {
  return X11Reply<T>(reply, &std::free);
}

/// The program's connection to the X server; null on a display that is not X.
xcb_connection_t* x11Connection();

xcb_window_t rootWindow(xcb_connection_t* connection);

xcb_atom_t atomNamed(xcb_connection_t* connection, const std::string& name);

/// The values of a property of 32-bit items; none when it is missing.
std::vector<std::uint32_t> longProperty(xcb_connection_t* connection, xcb_window_t window,
                                        xcb_atom_t property);

}  // namespace velun
