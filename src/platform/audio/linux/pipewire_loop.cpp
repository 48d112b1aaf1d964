// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/audio/linux/pipewire_loop.h"

#include <cerrno>
#include <pipewire/pipewire.h>
#include <utility>

namespace velun {

PipeWireLoop::Lock::Lock(PipeWireLoop& loop) : loop_(loop.loop_) {
  pw_thread_loop_lock(loop_);
}

PipeWireLoop::Lock::~Lock() {
  pw_thread_loop_unlock(loop_);
}

std::unique_ptr<PipeWireLoop> PipeWireLoop::start(const char* threadName, int* error) {
  errno = 0;
  pw_thread_loop* loop = pw_thread_loop_new(threadName, nullptr);
  if (!loop) {
    *error = errno != 0 ? -errno : -ENOMEM;
    return nullptr;
  }
  std::unique_ptr<PipeWireLoop> made(new PipeWireLoop(loop));
  *error = pw_thread_loop_start(loop);
  return *error < 0 ? nullptr : std::move(made);
}

PipeWireLoop::PipeWireLoop(pw_thread_loop* loop)
    : loop_(loop), context_(pw_context_new(pw_thread_loop_get_loop(loop), nullptr, 0)) {}

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
