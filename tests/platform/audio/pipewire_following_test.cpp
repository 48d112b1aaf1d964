// SPDX-License-Identifier: GPL-3.0-or-later
#include "audio/system_audio.h"
#include "platform/audio/linux/pipewire_audio_platform.h"
#include "support/manual_clock.h"
#include "support/playback_stream.h"
#include "support/private_pipewire.h"
#include "support/recorder.h"
#include "support/suite.h"

using namespace velun;
using namespace velun::test;
using namespace std::chrono_literals;

namespace {

constexpr int limit = 20'000;

}  // namespace

/// What a running capture makes of devices and servers that come and go. Its clock stands still
/// unless it is advanced, so that nothing here depends on how fast the machine is.
class PipeWireFollowingTest final : public Suite {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    Suite::init();
    server_ = std::make_unique<PrivatePipeWire>();
    QVERIFY(server_->start());
    QVERIFY(server_->addSink("speakers"));
    QVERIFY(server_->addSink("headphones"));
    QVERIFY(server_->setDefaultSink("speakers"));
    reports_.clear();
    recorder_.clear();
    source_ = std::make_unique<SystemAudio>(
        platform_.makeHardware([this](AudioInterruption report) { reports_ << report; }));
    source_->start(recorder_.handler());
  }

  void cleanup() {
    source_->stop();
    source_.reset();
    server_.reset();
  }

  void theDefaultOutputIsFollowedInMidTone() {
    const auto speakers = PlaybackStream::play("speakers", 1000);
    const auto headphones = PlaybackStream::play("headphones", 3000);
    VERIFY_SOON(hearsInTime(1000, 3000));
    QVERIFY(server_->setDefaultSink("headphones"));
    VERIFY_SOON(hearsInTime(3000, 1000));
    QVERIFY(server_->setDefaultSink("speakers"));
    VERIFY_SOON(hearsInTime(1000, 3000));
    QVERIFY(reports_.isEmpty());
  }

  void theDefaultOutputIsFollowedInSilence() {
    QVERIFY(server_->setDefaultSink("headphones"));
    // The session manager leaves a stream that has not run yet where it is.
    clock_.advance(1s);
    const auto headphones = PlaybackStream::play("headphones", 3000);
    VERIFY_SOON(hearsInTime(3000, 1000));
  }

  void anOutputThatGoesAndComesBackIsFollowed() {
    auto speakers = PlaybackStream::play("speakers", 1000);
    const auto headphones = PlaybackStream::play("headphones", 3000);
    VERIFY_SOON(hearsInTime(1000, 3000));
    speakers.reset();
    QVERIFY(server_->remove("speakers"));
    VERIFY_SOON(hearsInTime(3000, 1000));
    QVERIFY(server_->addSink("speakers"));
    QVERIFY(server_->awaitDefaultSink("speakers"));
    speakers = PlaybackStream::play("speakers", 1000);
    VERIFY_SOON(hearsInTime(1000, 3000));
    QVERIFY(reports_.isEmpty());
  }

  void theLastOutputMayGoAndAnotherCome() {
    auto player = PlaybackStream::play("speakers", 1000);
    VERIFY_SOON(hearsInTime(1000, 3000));
    player.reset();
    QVERIFY(server_->remove("headphones"));
    QVERIFY(server_->remove("speakers"));
    clock_.advance(60s);
    QVERIFY(reports_.isEmpty());
    QVERIFY(server_->addSink("television"));
    QVERIFY(server_->awaitDefaultSink("television"));
    player = PlaybackStream::play("television", 3000);
    VERIFY_SOON(hearsInTime(3000, 1000));
    QVERIFY(reports_.isEmpty());
  }

  void aSessionManagerThatRestartsIsNotNoticed() {
    auto player = PlaybackStream::play("speakers", 1000);
    VERIFY_SOON(hearsInTime(1000, 3000));
    player.reset();
    server_->killManager();
    QVERIFY(server_->startManager());
    // Outputs that belong to sound cards are made anew by the session manager.
    QVERIFY(server_->remove("speakers"));
    QVERIFY(server_->addSink("speakers"));
    QVERIFY(server_->setDefaultSink("speakers"));
    player = PlaybackStream::play("speakers", 3000);
    VERIFY_SOON(hearsInTime(3000, 1000));
    QVERIFY(reports_.isEmpty());
  }

  void aSessionManagerThatStaysAwayIsAnInterruption() {
    server_->killManager();
    VERIFY_SOON(isReportedInTime({AudioInterruption::began}));
    QVERIFY(server_->startManager());
    QVERIFY(server_->setDefaultSink("speakers"));
    const auto player = PlaybackStream::play("speakers", 1000);
    VERIFY_SOON(hearsInTime(1000, 3000));
    QCOMPARE(reports_, QList({AudioInterruption::began, AudioInterruption::ended}));
  }

  void aServerThatRestartsIsReachedAgain() {
    auto player = PlaybackStream::play("speakers", 1000);
    VERIFY_SOON(hearsInTime(1000, 3000));
    player.reset();
    server_->killDaemon();
    QTRY_COMPARE_WITH_TIMEOUT(reports_, QList{AudioInterruption::began}, limit);
    clock_.advance(10s);
    QCOMPARE(reports_.size(), 1);
    QVERIFY(server_->start());
    QVERIFY(server_->addSink("speakers"));
    QVERIFY(server_->setDefaultSink("speakers"));
    VERIFY_SOON(isReportedInTime({AudioInterruption::began, AudioInterruption::ended}));
    player = PlaybackStream::play("speakers", 3000);
    VERIFY_SOON(hearsInTime(3000, 1000));
  }

  void aServerThatStaysAwayEndsTheCapture() {
    server_->killDaemon();
    QTRY_COMPARE_WITH_TIMEOUT(reports_, QList{AudioInterruption::began}, limit);
    clock_.advance(29s);
    QCOMPARE(reports_.size(), 1);
    clock_.advance(2s);
    QCOMPARE(reports_, QList({AudioInterruption::began, AudioInterruption::failed}));
    clock_.advance(60s);
    QCOMPARE(reports_.size(), 2);
    QCOMPARE(clock_.scheduledCount(), std::size_t(0));
  }

  void theSourceMayBeDestroyedByTheReport() {
    source_->stop();
    source_ =
        std::make_unique<SystemAudio>(platform_.makeHardware([this](AudioInterruption report) {
          reports_ << report;
          source_ = std::make_unique<SystemAudio>(platform_.makeHardware(nullptr));
        }));
    source_->start(recorder_.handler());
    server_->killDaemon();
    QTRY_COMPARE_WITH_TIMEOUT(reports_, QList{AudioInterruption::began}, limit);
    clock_.advance(60s);
    QCOMPARE(reports_.size(), 1);
  }

  void aCaptureWhoseLinksAreTakenIsMadeAnew() {
    const auto player = PlaybackStream::play("speakers", 1000);
    VERIFY_SOON(hearsInTime(1000, 3000));
    for (const char* channel : {"FL", "FR"}) {
      QCOMPARE(QProcess::execute("pw-link", {"-d", QString("speakers:monitor_%1").arg(channel),
                                             QString("Velun Tap:input_%1").arg(channel)}),
               0);
    }
    VERIFY_SOON(clock_.scheduledCount() > 0);
    recorder_.clear();
    clock_.advance(1s);
    VERIFY_SOON(hearsInTime(1000, 3000));
    QVERIFY(reports_.isEmpty());
  }

 private:
  /// While time goes on: what the session manager forgets is made good after a while.
  bool hearsInTime(double frequency, double other) {
    clock_.advance(20ms);
    return recorder_.hearsOnly(frequency, other);
  }

  bool isReportedInTime(const QList<AudioInterruption>& reports) {
    clock_.advance(20ms);
    return reports_ == reports;
  }

  Recorder recorder_;
  ManualClock clock_;
  PipeWireAudioPlatform platform_{clock_};
  std::unique_ptr<PrivatePipeWire> server_;
  QList<AudioInterruption> reports_;
  std::unique_ptr<SystemAudio> source_;
};

QTEST_GUILESS_MAIN(PipeWireFollowingTest)
#include "pipewire_following_test.moc"
