// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/audio/pipewire_suite.h"
#include "support/await.h"
#include "support/playback_stream.h"

using namespace velun;
using namespace velun::test;
using namespace std::chrono_literals;

namespace {

constexpr int limit = 20'000;

}  // namespace

/// A running capture while devices and PipeWire come and go.
class PipeWireFollowingTest final : public PipeWireSuite {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    PipeWireSuite::init();
    source_ = makeSource(platform_, {});
    await(source_->start(recorder_.handler()));
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
    // The session manager recreates the outputs of sound cards; this one has none.
    QVERIFY(server_->remove("speakers"));
    QVERIFY(server_->addSink("speakers"));
    QVERIFY(server_->setDefaultSink("speakers"));
    player = PlaybackStream::play("speakers", 3000);
    VERIFY_SOON(hearsInTime(3000, 1000));
    QVERIFY(reports_.isEmpty());
  }

  void aSessionManagerThatStaysAwayIsAnInterruption() {
    auto player = PlaybackStream::play("speakers", 1000);
    VERIFY_SOON(hearsInTime(1000, 3000));
    player.reset();
    server_->killManager();
    VERIFY_SOON(isReportedInTime({"interrupted"}));
    QVERIFY(server_->startManager());
    // The session manager recreates the outputs of sound cards; this one has none. WirePlumber
    // 0.4.13 links no program at all while an output exists that has run under its predecessor.
    QVERIFY(server_->remove("speakers"));
    QVERIFY(server_->addSink("speakers"));
    QVERIFY(server_->setDefaultSink("speakers"));
    player = PlaybackStream::play("speakers", 3000);
    VERIFY_SOON(hearsInTime(3000, 1000));
    QCOMPARE(reports_, QStringList({"interrupted", "resumed"}));
  }

  void anOutputThatStaysIsCapturedUnderTheNextSessionManager() {
    source_.reset();
    QVERIFY(server_->setDefaultSink("headphones"));
    // Kept awake, the output would run under the first session manager; see above.
    source_ = makeSource(platformThatLetsSleep_, {});
    await(source_->start(recorder_.handler()));
    server_->killManager();
    VERIFY_SOON(isReportedInTime({"interrupted"}));
    QVERIFY(server_->remove("speakers"));
    QVERIFY(server_->startManager());
    QVERIFY(server_->setDefaultSink("headphones"));
    const auto player = PlaybackStream::play("headphones", 3000);
    VERIFY_SOON(hearsInTime(3000, 1000));
    QCOMPARE(reports_, QStringList({"interrupted", "resumed"}));
  }

  void aServerThatRestartsIsReachedAgain() {
    auto player = PlaybackStream::play("speakers", 1000);
    VERIFY_SOON(hearsInTime(1000, 3000));
    player.reset();
    server_->killDaemon();
    QTRY_COMPARE_WITH_TIMEOUT(reports_, QStringList{"interrupted"}, limit);
    clock_.advance(10s);
    QCOMPARE(reports_.size(), 1);
    QVERIFY(server_->start());
    QVERIFY(server_->addSink("speakers"));
    QVERIFY(server_->setDefaultSink("speakers"));
    VERIFY_SOON(isReportedInTime({"interrupted", "resumed"}));
    player = PlaybackStream::play("speakers", 3000);
    VERIFY_SOON(hearsInTime(3000, 1000));
  }

  void aServerThatStaysAwayEndsTheCapture() {
    server_->killDaemon();
    QTRY_COMPARE_WITH_TIMEOUT(reports_, QStringList{"interrupted"}, limit);
    clock_.advance(29s);
    QCOMPARE(reports_.size(), 1);
    clock_.advance(2s);
    QCOMPARE(reports_,
             QStringList({"interrupted",
                          "Audio capture was interrupted. The sound server (PipeWire) did "
                          "not come back. Start captions again once it works."}));
    clock_.advance(60s);
    QCOMPARE(reports_.size(), 2);
    QCOMPARE(clock_.scheduledCount(), std::size_t(0));
  }

  void aReceiverMayDestroyTheSource() {
    connect(source_.get(), &AudioSource::interrupted, this, [this] { source_.reset(); });
    server_->killDaemon();
    QTRY_COMPARE_WITH_TIMEOUT(reports_, QStringList{"interrupted"}, limit);
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
  bool isReportedInTime(const QStringList& reports) {
    clock_.advance(20ms);
    return reports_ == reports;
  }

  PipeWireAudioPlatform platformThatLetsSleep_{clock_, 0ms};
};

QTEST_GUILESS_MAIN(PipeWireFollowingTest)
#include "pipewire_following_test.moc"
