// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoreApplication>
#include <QMetaObject>
#include <QThreadPool>
#include <stop_token>
#include <utility>

namespace velun {

/// Runs work on a thread pool and passes the result to the main thread. Only the latest job
/// counts: starting another one, `cancel` and the destructor stop the job before, and its result is
/// discarded. Make it the last member of its owner, so that no result can arrive while the other
/// members are destroyed. Main thread.
class LatestJob {
 public:
  LatestJob() = default;
  ~LatestJob() { cancel(); }
  Q_DISABLE_COPY_MOVE(LatestJob)

  /// Calls `work(std::stop_token)` on a pool thread, then `done(result)` from the main event loop.
  /// `work` must own what it uses, must not throw, and should return soon after a stop is
  /// requested: the application waits for it when it exits. `done` may destroy this object.
  template <class Work, class Done>
  void start(Work work, Done done) {
    cancel();
    stop_ = std::stop_source();
    isRunning_ = true;
    pool().start(
        [this, stop = stop_.get_token(), work = std::move(work), done = std::move(done)]() mutable {
          auto deliver = [this, stop, result = work(stop), done = std::move(done)]() mutable {
            // A stop is only requested on the main thread, so this object still exists.
            if (stop.stop_requested()) return;
            isRunning_ = false;
            done(std::move(result));
          };
          QMetaObject::invokeMethod(QCoreApplication::instance(), std::move(deliver),
                                    Qt::QueuedConnection);
        });
  }

  /// Requests a stop and discards the result. Does nothing when no job is running.
  void cancel() {
    stop_.request_stop();
    isRunning_ = false;
  }

  /// The threads of all jobs. Not Qt's own pool: Qt paints with it, so that painting would wait for
  /// a job that waits for a disk. The application object waits for their work when it is destroyed.
  static QThreadPool& pool();

  /// Whether a result is still expected.
  bool isRunning() const { return isRunning_; }

 private:
  std::stop_source stop_{std::nostopstate};
  bool isRunning_ = false;
};

}  // namespace velun
