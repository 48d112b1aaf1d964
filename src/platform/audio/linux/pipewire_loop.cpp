// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/audio/linux/pipewire_loop.h"

#include <pipewire/pipewire.h>

namespace velun {

PipeWireLoop::Lock::Lock(PipeWireLoop& loop) : loop_(loop.loop_) {
  pw_thread_loop_lock(loop_);
}

PipeWireLoop::Lock::~Lock() {
  pw_thread_loop_unlock(loop_);
}

PipeWireLoop::PipeWireLoop(const char* threadName)
    : loop_(pw_thread_loop_new(threadName, nullptr)),
      context_(pw_context_new(pw_thread_loop_get_loop(loop_), nullptr, 0)) {
  pw_thread_loop_start(loop_);
}

PipeWireLoop::~PipeWireLoop() {
  pw_thread_loop_stop(loop_);
  if (context_) pw_context_destroy(context_);
  pw_thread_loop_destroy(loop_);
}

bool PipeWireLoop::waitUntil(const std::function<bool()>& condition,
                             std::chrono::milliseconds limit) {
  timespec end{};
  pw_thread_loop_get_time(loop_, &end, std::chrono::nanoseconds(limit).count());
  while (!condition()) {
    if (pw_thread_loop_timed_wait_full(loop_, &end) < 0) return condition();
  }
  return true;
}

void PipeWireLoop::wake() {
  pw_thread_loop_signal(loop_, false);
}

}  // namespace velun
