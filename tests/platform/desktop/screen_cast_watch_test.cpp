// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/screen_cast_watch.h"

#include "support/manual_clock.h"
#include "support/private_pipewire.h"
#include "support/settle.h"
#include "support/suite.h"
#include "support/video_stream.h"

#include <QProcess>
#include <QSignalSpy>
#include <sys/resource.h>
#include <unistd.h>

using namespace velun;
using namespace std::chrono_literals;
using test::VideoStream;

/// Runs against a real PipeWire, with offers and consumers of video like those of desktops.
class ScreenCastWatchTest final : public test::Suite {
  Q_OBJECT

 private:
  static std::unique_ptr<VideoStream> consumer() {
    return std::make_unique<VideoStream>(
        VideoStream::Direction::consume,
        std::map<std::string, std::string>{{"media.type", "Video"},
                                           {"media.category", "Capture"},
                                           {"media.role", "Screen"},
                                           {"node.name", "recorder"}});
  }
  static std::unique_ptr<VideoStream> offer(const std::string& role) {
    return std::make_unique<VideoStream>(
        VideoStream::Direction::offer,
        std::map<std::string, std::string>{
            {"media.class", "Video/Source"}, {"media.role", role}, {"node.name", "portal"}});
  }
  /// Whether pw-link lists the offer: "-o" among all outputs, "-l" among the linked ones.
  static bool isListed(const QString& option) {
    QProcess links;
    links.start("pw-link", {option});
    return links.waitForFinished() && links.readAllStandardOutput().contains("portal:");
  }

 private Q_SLOTS:
  void reconnectsWithoutAServer() {
    QVERIFY(!ScreenCastWatch::isPossible());
    test::ManualClock clock;
    ScreenCastWatch watch(clock);
    watch.setWatching(true);
    QVERIFY(!watch.isConnected());
    QVERIFY(server_.start());
    QVERIFY(ScreenCastWatch::isPossible());
    clock.advance(2s);
    QVERIFY(watch.isConnected());
  }

  void reconnectsWithoutFileDescriptors() {
    const int first = dup(STDOUT_FILENO);
    QVERIFY(first >= 0);
    close(first);
    test::ManualClock clock;
    ScreenCastWatch watch(clock);
    rlimit usual{};
    QCOMPARE(getrlimit(RLIMIT_NOFILE, &usual), 0);
    const rlimit none{rlim_t(first), usual.rlim_max};
    QCOMPARE(setrlimit(RLIMIT_NOFILE, &none), 0);
    watch.setWatching(true);
    QCOMPARE(setrlimit(RLIMIT_NOFILE, &usual), 0);
    QVERIFY(!watch.isConnected());
    clock.advance(2s);
    QVERIFY(watch.isConnected());
  }

  void castLastsFromItsFirstConsumerToASecondAfterItsEnd() {
    test::ManualClock clock;
    ScreenCastWatch watch(clock);
    QSignalSpy spy(&watch, &ScreenCastWatch::castRunningChanged);
    watch.setWatching(true);
    const auto screen = offer("Screen");
    QTRY_VERIFY(isListed("-o"));
    test::settle();
    QVERIFY2(!watch.isCastRunning(), "no consumer yet");
    auto recorder = consumer();
    QTRY_VERIFY(watch.isCastRunning());
    recorder.reset();
    QTRY_VERIFY(clock.scheduledCount() == 1);
    QVERIFY(watch.isCastRunning());
    // It starts again in time, as a cast that renegotiates does.
    recorder = consumer();
    QTRY_VERIFY(clock.scheduledCount() == 0);
    recorder.reset();
    QTRY_VERIFY(clock.scheduledCount() == 1);
    clock.advance(1s);
    QVERIFY(!watch.isCastRunning());
    QCOMPARE(spy.count(), 2);
  }

  void cameraIsNotACast() {
    test::ManualClock clock;
    ScreenCastWatch watch(clock);
    watch.setWatching(true);
    const auto camera = offer("Camera");
    const auto call = consumer();
    QTRY_VERIFY(isListed("-l"));
    test::settle();
    QVERIFY(!watch.isCastRunning());
  }

  void seesARunningCastAndForgetsItWhenStopped() {
    const auto screen = offer("Screen");
    const auto recorder = consumer();
    test::ManualClock clock;
    ScreenCastWatch watch(clock);
    watch.setWatching(true);
    QTRY_VERIFY(watch.isCastRunning());
    watch.setWatching(false);
    QVERIFY(!watch.isCastRunning());
    QVERIFY(!watch.isConnected());
  }

  void castEndsWithTheServer() {
    test::ManualClock clock;
    ScreenCastWatch watch(clock);
    watch.setWatching(true);
    QVERIFY(watch.isConnected());
    server_.killDaemon();
    QTRY_VERIFY(!watch.isConnected());
    QVERIFY(clock.scheduledCount() > 0);
  }

 private:
  test::PrivatePipeWire server_;
};

QTEST_GUILESS_MAIN(ScreenCastWatchTest)
#include "screen_cast_watch_test.moc"
