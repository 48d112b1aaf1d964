// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/foundation/file_lock.h"

#include <cerrno>
#include <chrono>
#include <sys/file.h>
#include <thread>

namespace velun {

bool lock(const FileDescriptor& file) {
  return ::flock(file.number(), LOCK_EX | LOCK_NB) == 0;
}

bool waitForLock(const FileDescriptor& file) {
  constexpr int kAttempts = 1000;
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    if (lock(file) || errno != EWOULDBLOCK) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return false;
}

}  // namespace velun
