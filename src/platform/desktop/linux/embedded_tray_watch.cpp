// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/embedded_tray_watch.h"

#include "platform/desktop/linux/x11_display.h"

namespace velun {

namespace {

constexpr auto kSelection = "_NET_SYSTEM_TRAY_S0";

}  // namespace

EmbeddedTrayWatch::EmbeddedTrayWatch() : connection_(x11Connection()) {
  if (!connection_) return;
  watch_ = std::make_unique<X11SelectionWatch>(connection_, kSelection);
  connect(watch_.get(), &X11SelectionWatch::changed, this, &EmbeddedTrayWatch::changed);
}

xcb_window_t EmbeddedTrayWatch::owner() const {
  if (!connection_) return XCB_WINDOW_NONE;
  const auto cookie = xcb_get_selection_owner(connection_, atomNamed(connection_, kSelection));
  const auto reply = owned(xcb_get_selection_owner_reply(connection_, cookie, nullptr));
  return reply ? reply->owner : xcb_window_t(XCB_WINDOW_NONE);
}

std::optional<std::uint32_t> EmbeddedTrayWatch::foreground() const {
  const xcb_window_t tray = owner();
  if (tray == XCB_WINDOW_NONE) return std::nullopt;
  // Red, green and blue (0 to 65535) of the icons' normal colour; three more colours may follow.
  const auto cookie =
      xcb_get_property(connection_, 0, tray, atomNamed(connection_, "_NET_SYSTEM_TRAY_COLORS"),
                       XCB_GET_PROPERTY_TYPE_ANY, 0, 3);
  const auto reply = owned(xcb_get_property_reply(connection_, cookie, nullptr));
  if (!reply || reply->format != 32 || reply->value_len < 3) return std::nullopt;
  const auto* colour = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
  const auto channel = [colour](int index) {
    return colour[index] >> 8 & 0xff;
  };
  return channel(0) << 16 | channel(1) << 8 | channel(2);
}

}  // namespace velun
