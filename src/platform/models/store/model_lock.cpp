// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/models/store/model_lock.h"

#include "platform/models/store/model_store_failures.h"

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace velun {

ModelLock::ModelLock(const QString& folder, const std::stop_token& stop) : file_(folder + "/lock") {
  using namespace std::chrono_literals;
  // A download may take an hour: a lock becomes stale only when its process dies.
  file_.setStaleLockTime(0);
  std::mutex mutex;
  std::condition_variable_any condition;
  std::unique_lock waiting(mutex);
  while (!file_.tryLock(0)) {
    if (file_.error() != QLockFile::LockFailedError) throw model_failures::notSaved(folder);
    condition.wait_for(waiting, stop, 100ms, [] { return false; });
    if (stop.stop_requested()) throw Cancelled();
  }
}

}  // namespace velun
