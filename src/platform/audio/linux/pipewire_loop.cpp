// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/audio/linux/pipewire_loop.h"

#include <cerrno>
#include <pipewire/pipewire.h>
#include <QMetaObject>

namespace velun {

namespace {

int lastError(int otherwise) {
  return errno != 0 ? -errno : otherwise;
}

}  // namespace

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
    *error = lastError(-ENOMEM);
    return nullptr;
  }
  std::unique_ptr<PipeWireLoop> made(new PipeWireLoop(loop));
  errno = 0;
  made->context_ = pw_context_new(pw_thread_loop_get_loop(loop), nullptr, 0);
  *error = made->context_ ? pw_thread_loop_start(loop) : lastError(-ENOENT);
  return *error < 0 ? nullptr : std::move(made);
}

PipeWireLoop::PipeWireLoop(pw_thread_loop* loop) : loop_(loop) {}

PipeWireLoop::~PipeWireLoop() {
  pw_thread_loop_stop(loop_);
  if (context_) pw_context_destroy(context_);
  pw_thread_loop_destroy(loop_);
}

void PipeWireLoop::notify() {
  if (isNotifying_.exchange(true)) return;
  QMetaObject::invokeMethod(
      this,
      [this] {
        isNotifying_ = false;
        Q_EMIT changed();
      },
      Qt::QueuedConnection);
}

}  // namespace velun
