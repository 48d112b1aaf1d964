// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/pointer_motion.h"

#include "platform/desktop/linux/wayland_connection.h"

#include <relative-pointer-unstable-v1-client.h>
#include <wayland-client.h>

namespace velun {

PointerMotion::~PointerMotion() {
  if (relative_) zwp_relative_pointer_v1_destroy(relative_);
  if (pointer_) wl_pointer_release(pointer_);
}

void PointerMotion::listen() {
  if (relative_ || !connection_.relativePointers() || !connection_.seat()) return;
  pointer_ = wl_seat_get_pointer(connection_.seat());
  relative_ = zwp_relative_pointer_manager_v1_get_relative_pointer(connection_.relativePointers(),
                                                                   pointer_);
  connection_.leaveToQt(pointer_);
  connection_.leaveToQt(relative_);
  static const wl_pointer_listener buttons = [] {
    wl_pointer_listener listener{};
    listener.enter = [](void*, wl_pointer*, std::uint32_t, wl_surface*, wl_fixed_t, wl_fixed_t) {
    };
    listener.leave = [](void*, wl_pointer*, std::uint32_t, wl_surface*) {
    };
    listener.motion = [](void*, wl_pointer*, std::uint32_t, wl_fixed_t, wl_fixed_t) {
    };
    listener.button = [](void* self, wl_pointer*, std::uint32_t, std::uint32_t, std::uint32_t,
                         std::uint32_t state) {
      auto& motion = *static_cast<PointerMotion*>(self);
      motion.isDown_ = state == WL_POINTER_BUTTON_STATE_PRESSED;
      if (motion.isDown_) motion.sincePress_ = {};
    };
    listener.axis = [](void*, wl_pointer*, std::uint32_t, std::uint32_t, wl_fixed_t) {
    };
    return listener;
  }();
  wl_pointer_add_listener(pointer_, &buttons, this);
  static const zwp_relative_pointer_v1_listener motion = {
      [](void* self, zwp_relative_pointer_v1*, std::uint32_t, std::uint32_t, wl_fixed_t x,
         wl_fixed_t y, wl_fixed_t, wl_fixed_t) {
        static_cast<PointerMotion*>(self)->handleMotion(
            QPointF(wl_fixed_to_double(x), wl_fixed_to_double(y)));
      }};
  zwp_relative_pointer_v1_add_listener(relative_, &motion, this);
  connection_.flush();
}

bool PointerMotion::start() {
  listen();
  isReporting_ = relative_ != nullptr;
  return isReporting_;
}

void PointerMotion::stop() {
  if (isReporting_ && !sincePress_.isNull()) Q_EMIT moved(sincePress_);
  isReporting_ = false;
}

void PointerMotion::handleMotion(const QPointF& by) {
  if (isDown_) sincePress_ += by;
  if (isReporting_) Q_EMIT moved(sincePress_);
}

}  // namespace velun
