// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/foundation/latest_job.h"

#include "support/suite.h"

#include <array>
#include <memory>
#include <QSemaphore>
#include <QThread>

using namespace velun;

namespace {

/// Work that runs until it is released or stopped. For one job: two would share one release, so
/// that one that is stopped could free the other and leave itself waiting.
struct BlockedWork {
  std::shared_ptr<QSemaphore> started = std::make_shared<QSemaphore>();
  std::shared_ptr<QSemaphore> released = std::make_shared<QSemaphore>();
  int result = 0;

  int operator()(const std::stop_token& stop) const {
    const std::stop_callback release(stop, [this] { released->release(); });
    started->release();
    released->acquire();
    return result;
  }
};

}  // namespace

class LatestJobTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() {
    LatestJob::pool().waitForDone();
    QCoreApplication::processEvents();
  }

  void deliversTheResultOnTheMainThread() {
    LatestJob job;
    std::optional<QThread*> worker;
    QThread* receiver = nullptr;
    job.start([](const std::stop_token&) { return QThread::currentThread(); },
              [&](QThread* thread) {
                worker = thread;
                receiver = QThread::currentThread();
                QVERIFY(!job.isRunning());
              });
    QVERIFY(job.isRunning());
    VERIFY_SOON(worker);
    QVERIFY(*worker != QThread::currentThread());
    QCOMPARE(receiver, QThread::currentThread());
  }

  void eventLoopKeepsRunning() {
    LatestJob job;
    const BlockedWork work{.result = 7};
    int result = 0;
    job.start(work, [&result](int value) { result = value; });
    work.started->acquire();
    int turns = 0;
    while (turns < 5) {
      QMetaObject::invokeMethod(
          this, [&turns] { ++turns; }, Qt::QueuedConnection);
      QCoreApplication::processEvents();
    }
    QCOMPARE(result, 0);
    work.released->release();
    QTRY_COMPARE(result, 7);
  }

  void jobsThatWaitKeepNeitherQtNorOtherJobsWaiting() {
    std::array<LatestJob, 8> jobs;
    for (LatestJob& job : jobs) job.start(BlockedWork{}, [](int) {});
    // Qt's pool paints.
    QSemaphore painted;
    QThreadPool::globalInstance()->start([&painted] { painted.release(); });
    QVERIFY(painted.tryAcquire(1, 30'000));
    LatestJob another;
    bool isDone = false;
    another.start([](const std::stop_token&) { return 0; }, [&isDone](int) { isDone = true; });
    QTRY_VERIFY(isDone);
  }

  void onlyTheLatestResultIsDelivered() {
    LatestJob job;
    QList<int> results;
    const BlockedWork first{.result = 1};
    job.start(first, [&results](int value) { results.append(value); });
    first.started->acquire();
    job.start([](const std::stop_token&) { return 2; },
              [&results](int value) { results.append(value); });
    cleanup();
    QTRY_COMPARE(results, QList<int>{2});
  }

  void cancelDiscardsAPostedResult() {
    LatestJob job;
    int calls = 0;
    job.start([](const std::stop_token&) { return 1; }, [&calls](int) { ++calls; });
    LatestJob::pool().waitForDone();
    job.cancel();
    QVERIFY(!job.isRunning());
    QCoreApplication::processEvents();
    QCOMPARE(calls, 0);
  }

  void destructionStopsTheWork() {
    int calls = 0;
    const BlockedWork work;
    {
      LatestJob job;
      job.start(work, [&calls](int) { ++calls; });
      work.started->acquire();
    }
    cleanup();
    QCOMPARE(calls, 0);
  }

  void receiverMayDestroyTheJob() {
    auto job = std::make_unique<LatestJob>();
    job->start([](const std::stop_token&) { return 1; }, [&job](int) { job.reset(); });
    VERIFY_SOON(!job);
  }

  void receiverMayStartTheNextJob() {
    LatestJob job;
    int result = 0;
    const auto one = [](const std::stop_token&) {
      return 1;
    };
    job.start(one, [&](int first) {
      job.start(one, [&result, first](int second) { result = first + second; });
    });
    QTRY_COMPARE(result, 2);
  }
};

QTEST_GUILESS_MAIN(LatestJobTest)
#include "latest_job_test.moc"
