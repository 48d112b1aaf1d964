// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <memory>

class QObject;
class QScreen;
class QWindow;
struct wl_compositor;
struct wl_display;
struct wl_event_queue;
struct wl_output;
struct wl_proxy;
struct wl_registry;
struct wl_seat;
struct wl_surface;
struct xdg_wm_base;
struct zwlr_layer_shell_v1;
struct zwp_relative_pointer_manager_v1;

namespace velun {

/// Qt's own connection to the Wayland compositor, and on it the protocols that Qt does not speak.
/// Main thread.
///
/// Objects are created on a queue of their own, on which an answer can be awaited while no event of
/// Qt's is handled; afterwards they belong to Qt's queue, which its event loop serves.
class WaylandConnection final {
 public:
  /// Null unless Qt runs on Wayland.
  static std::unique_ptr<WaylandConnection> open();
  ~WaylandConnection();

  WaylandConnection(const WaylandConnection&) = delete;
  WaylandConnection& operator=(const WaylandConnection&) = delete;

  /// Null where the compositor has no layer surfaces.
  zwlr_layer_shell_v1* layerShell() const { return layerShell_; }
  /// Whether a layer surface can get the keyboard by a click alone.
  bool givesKeyboardOnDemand() const;
  xdg_wm_base* windowBase() const { return windowBase_; }
  zwp_relative_pointer_manager_v1* relativePointers() const { return relativePointers_; }

  wl_compositor* compositor() const;
  /// Null when there is none.
  wl_seat* seat() const { return seat_; }
  /// The number of the last event from a pointer or a keyboard.
  std::uint32_t lastSerial() const;

  /// Null for a window that is not shown.
  static wl_surface* surfaceOf(QWindow& window);
  /// Null for no screen, and for the one that Qt makes up when there is none.
  static wl_output* outputOf(QScreen* screen);
  /// Qt's object behind the window, which has the signals wlSurfaceCreated and wlSurfaceDestroyed;
  /// null when the window has none, or it is not one of Qt's on Wayland.
  static QObject* platformObjectOf(QWindow& window);

  /// Makes the requests since the last commit of the window's surface effective.
  void commit(QWindow& window) const;
  void flush() const;

  /// A copy of `object`; what is created with it belongs to the queue of this connection.
  template <class T>
  std::unique_ptr<T, void (*)(T*)> ownQueued(T* object) const {
    return {static_cast<T*>(wrap(object)), [](T* wrapper) {
              unwrap(wrapper);
            }};
  }
  /// Waits until `isDone`, which events of this connection's queue set, for a few answers of the
  /// compositor at most. Nothing may be drawn before; it is a matter of a millisecond.
  void await(const bool& isDone) const;
  /// Moves an object to Qt's queue.
  void leaveToQt(void* object) const;

 private:
  WaylandConnection() = default;
  void bindProtocols();
  void* wrap(void* object) const;
  static void unwrap(void* wrapper);

  wl_display* display_ = nullptr;
  wl_event_queue* queue_ = nullptr;
  wl_registry* registry_ = nullptr;
  zwlr_layer_shell_v1* layerShell_ = nullptr;
  wl_seat* seat_ = nullptr;
  xdg_wm_base* windowBase_ = nullptr;
  zwp_relative_pointer_manager_v1* relativePointers_ = nullptr;
};

}  // namespace velun
