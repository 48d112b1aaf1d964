// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/wayland_session.h"

#include <cstdint>
#include <memory>
#include <string_view>
#include <wayland-client.h>
#include <wlr-layer-shell-unstable-v1-client.h>

namespace velun {

bool offersLayerSurfaces() {
  const std::unique_ptr<wl_display, decltype(&wl_display_disconnect)> display(
      wl_display_connect(nullptr), &wl_display_disconnect);
  if (!display) return false;
  static const wl_registry_listener listener = {
      [](void* found, wl_registry*, std::uint32_t, const char* interface, std::uint32_t) {
        if (std::string_view(interface) == zwlr_layer_shell_v1_interface.name) {
          *static_cast<bool*>(found) = true;
        }
      },
      [](void*, wl_registry*, std::uint32_t) {},
  };
  bool isFound = false;
  wl_registry* registry = wl_display_get_registry(display.get());
  wl_registry_add_listener(registry, &listener, &isFound);
  wl_display_roundtrip(display.get());
  wl_registry_destroy(registry);
  return isFound;
}

}  // namespace velun
