// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/audio/linux/pipewire_audio_platform.h"
#include "support/await.h"
#include "support/failure_of.h"
#include "support/manual_clock.h"
#include "support/suite.h"

#include <QElapsedTimer>
#include <QFile>
#include <QLocalServer>
#include <QLocalSocket>
#include <QTimer>

using namespace velun;
using namespace velun::test;
using namespace std::chrono_literals;

/// A socket in place of PipeWire that accepts connections and never replies.
class SilentServerTest final : public Suite {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    QVERIFY(server_.listen(qEnvironmentVariable("XDG_RUNTIME_DIR") + "/pipewire-0"));
    connect(&server_, &QLocalServer::newConnection, this, [this] { ++connections_; });
  }

  void eventLoopGoesOnUntilTheStartTimesOut() {
    const auto source = platform_.makeSource({});
    const auto end = std::make_shared<TaskEnd>();
    const QCoro::Task<> following = followTask(source->start([](std::span<const float>) {}), end);
    int turns = 0;
    double longest = turnUntil([&] { return connections_ > 0 && ++turns > 50; });
    QVERIFY(!end->hasEnded);
    clock_.advance(4900ms);
    QVERIFY(!end->hasEnded);
    clock_.advance(200ms);
    VERIFY_SOON(end->hasEnded);
    QVERIFY2(longest < 1.0, qPrintable(QString::number(longest)));
    QCOMPARE(textOf(end->error),
             QString("Audio start failed. The sound server (PipeWire) is not responding. Restart "
                     "it, or log in again."));
  }

  void stopDoesNotWait() {
    const auto source = platform_.makeSource({AudioTarget::Kind::input, {}, {}});
    QCoro::Task<> starting = source->start([](std::span<const float>) {});
    QElapsedTimer timer;
    timer.start();
    source->stop();
    QVERIFY(timer.elapsed() < 1000);
    QCOMPARE(failureOf(std::move(starting)), QString("cancelled"));
    QCOMPARE(clock_.scheduledCount(), std::size_t(0));
  }

 private:
  /// Runs the event loop until `condition` is true. Returns the duration of its longest turn in
  /// seconds.
  double turnUntil(const std::function<bool()>& condition) {
    double longest = 0;
    QElapsedTimer timer;
    timer.start();
    const bool held = QTest::qWaitFor(
        [&] {
          longest = std::max(longest, double(timer.restart()) / 1000);
          return condition();
        },
        20'000);
    return held ? longest : 1000;
  }

  static QString textOf(const std::exception_ptr& error) {
    try {
      if (error) std::rethrow_exception(error);
    } catch (const Failure& failure) {
      return failure.errorDescription();
    }
    return {};
  }

  QLocalServer server_;
  int connections_ = 0;
  ManualClock clock_;
  PipeWireAudioPlatform platform_{clock_};
};

QTEST_GUILESS_MAIN(SilentServerTest)
#include "silent_server_test.moc"
