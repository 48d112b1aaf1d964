// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/wayland_connection.h"

#include <algorithm>
#include <QGuiApplication>
#include <qpa/qplatformnativeinterface.h>
#include <qpa/qplatformwindow.h>
#include <QWindow>
#include <relative-pointer-unstable-v1-client.h>
#include <string_view>
#include <wayland-client.h>
#include <wlr-layer-shell-unstable-v1-client.h>
#include <xdg-shell-client.h>

namespace velun {

namespace {

constexpr std::uint32_t kLayerShellVersion = 4;
/// Its pointers have five kinds of events.
constexpr std::uint32_t kSeatVersion = 3;
/// More answers than the compositor needs to configure a surface.
constexpr int kMaxAnswers = 20;

QPlatformNativeInterface* native() {
  return QGuiApplication::platformNativeInterface();
}

template <class T>
T* ofProgram(const char* name) {
  return static_cast<T*>(native()->nativeResourceForIntegration(name));
}

template <class T>
T* bind(wl_registry* registry, std::uint32_t name, const wl_interface& interface,
        std::uint32_t version) {
  return static_cast<T*>(wl_registry_bind(registry, name, &interface, version));
}

}  // namespace

std::unique_ptr<WaylandConnection> WaylandConnection::open() {
  if (!QGuiApplication::platformName().startsWith(QLatin1String("wayland"))) return nullptr;
  auto* display = ofProgram<wl_display>("wl_display");
  if (!display) return nullptr;
  std::unique_ptr<WaylandConnection> connection(new WaylandConnection);
  connection->display_ = display;
  connection->queue_ = wl_display_create_queue(display);
  connection->bindProtocols();
  return connection;
}

void WaylandConnection::bindProtocols() {
  registry_ = wl_display_get_registry(ownQueued(display_).get());
  static const wl_registry_listener listener = {
      [](void* data, wl_registry* registry, std::uint32_t name, const char* interface,
         std::uint32_t version) {
        auto& self = *static_cast<WaylandConnection*>(data);
        const std::string_view known(interface);
        if (known == zwlr_layer_shell_v1_interface.name) {
          self.layerShell_ = bind<zwlr_layer_shell_v1>(
              registry, name, zwlr_layer_shell_v1_interface, std::min(version, kLayerShellVersion));
        } else if (known == wl_seat_interface.name && !self.seat_) {
          self.seat_ =
              bind<wl_seat>(registry, name, wl_seat_interface, std::min(version, kSeatVersion));
        } else if (known == xdg_wm_base_interface.name) {
          self.windowBase_ = bind<xdg_wm_base>(registry, name, xdg_wm_base_interface, 1);
        } else if (known == zwp_relative_pointer_manager_v1_interface.name) {
          self.relativePointers_ = bind<zwp_relative_pointer_manager_v1>(
              registry, name, zwp_relative_pointer_manager_v1_interface, 1);
        }
      },
      [](void*, wl_registry*, std::uint32_t) {},
  };
  wl_registry_add_listener(registry_, &listener, this);
  wl_display_roundtrip_queue(display_, queue_);
  if (!windowBase_) return;
  static const xdg_wm_base_listener answerer = {[](void*, xdg_wm_base* base, std::uint32_t serial) {
    xdg_wm_base_pong(base, serial);
  }};
  xdg_wm_base_add_listener(windowBase_, &answerer, nullptr);
  leaveToQt(windowBase_);
}

WaylandConnection::~WaylandConnection() {
  if (relativePointers_) zwp_relative_pointer_manager_v1_destroy(relativePointers_);
  if (windowBase_) xdg_wm_base_destroy(windowBase_);
  if (seat_) wl_seat_destroy(seat_);
  if (layerShell_) zwlr_layer_shell_v1_destroy(layerShell_);
  wl_registry_destroy(registry_);
  wl_event_queue_destroy(queue_);
}

bool WaylandConnection::givesKeyboardOnDemand() const {
  return zwlr_layer_shell_v1_get_version(layerShell_) >=
         ZWLR_LAYER_SURFACE_V1_KEYBOARD_INTERACTIVITY_ON_DEMAND_SINCE_VERSION;
}

wl_compositor* WaylandConnection::compositor() const {
  return ofProgram<wl_compositor>("compositor");
}

std::uint32_t WaylandConnection::lastSerial() const {
  const void* serial = native()->nativeResourceForIntegration("serial");
  return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(serial));
}

wl_surface* WaylandConnection::surfaceOf(QWindow& window) {
  return static_cast<wl_surface*>(native()->nativeResourceForWindow("surface", &window));
}

wl_output* WaylandConnection::outputOf(QScreen* screen) {
  return screen ? static_cast<wl_output*>(native()->nativeResourceForScreen("output", screen))
                : nullptr;
}

QObject* WaylandConnection::platformObjectOf(QWindow& window) {
  // A QObject is the first base of Qt's class. dynamic_cast<QObject*> would do the same, but needs
  // a private symbol of Qt's, which ties a package to one version of Qt.
  auto* object = static_cast<QObject*>(dynamic_cast<void*>(window.handle()));
  return object && object->inherits("QtWaylandClient::QWaylandWindow") ? object : nullptr;
}

void WaylandConnection::commit(QWindow& window) const {
  if (wl_surface* surface = surfaceOf(window)) wl_surface_commit(surface);
  flush();
}

void WaylandConnection::flush() const {
  wl_display_flush(display_);
}

void WaylandConnection::await(const bool& isDone) const {
  for (int i = 0; i < kMaxAnswers && !isDone; ++i) {
    if (wl_display_roundtrip_queue(display_, queue_) < 0) return;
  }
}

void WaylandConnection::leaveToQt(void* object) const {
  wl_proxy_set_queue(static_cast<wl_proxy*>(object), nullptr);
  // What Qt's thread has read for it before.
  wl_display_dispatch_queue_pending(display_, queue_);
}

void* WaylandConnection::wrap(void* object) const {
  void* wrapper = wl_proxy_create_wrapper(object);
  wl_proxy_set_queue(static_cast<wl_proxy*>(wrapper), queue_);
  return wrapper;
}

void WaylandConnection::unwrap(void* wrapper) {
  wl_proxy_wrapper_destroy(wrapper);
}

}  // namespace velun
