// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/foundation/latest_job.h"

namespace velun {

namespace {

/// More than there are kinds of jobs: none waits for another that a disk keeps waiting.
constexpr int kMaxThreads = 16;

class JobPool final : public QThreadPool {
 public:
  JobPool() {
    setMaxThreadCount(kMaxThreads);
    // Their results are for the application object.
    qAddPostRoutine([] { LatestJob::pool().waitForDone(); });
  }
};

}  // namespace

QThreadPool& LatestJob::pool() {
  static JobPool pool;
  return pool;
}

}  // namespace velun
