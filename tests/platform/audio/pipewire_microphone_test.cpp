// SPDX-License-Identifier: GPL-3.0-or-later
#include "audio/mic_audio.h"
#include "audio/system_audio.h"
#include "language/localization.h"
#include "platform/audio/linux/pipewire_audio_platform.h"
#include "platform/foundation/failure.h"
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

/// The microphone beside a computer that plays something else.
class PipeWireMicrophoneTest final : public Suite {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    Suite::init();
    server_ = std::make_unique<PrivatePipeWire>();
    QVERIFY(server_->start());
    QVERIFY(server_->addSink("speakers"));
    QVERIFY(server_->setDefaultSink("speakers"));
    reports_.clear();
    recorder_.clear();
    source_ = std::make_unique<MicAudio>(
        platform_.makeInputNode([this](AudioInterruption report) { reports_ << report; }));
  }

  void cleanup() {
    Localization::shared().setLanguage(AppLanguage::english);
    source_->stop();
    source_.reset();
    server_.reset();
  }

  void theMicrophoneIsHeardAndNotTheComputer_data() {
    QTest::addColumn<int>("rate");
    QTest::addColumn<QString>("channels");
    QTest::addColumn<int>("channelCount");
    QTest::newRow("mono") << 44'100 << "MONO" << 1;
    QTest::newRow("stereo") << 48'000 << "FL FR" << 2;
  }
  void theMicrophoneIsHeardAndNotTheComputer() {
    QFETCH(int, rate);
    QFETCH(QString, channels);
    QVERIFY(server_->addMicrophone("mic", rate, channels));
    QVERIFY(server_->awaitDefaultSource("mic"));
    source_->start(recorder_.handler());
    const auto computer = PlaybackStream::play("speakers", 1000);
    const auto voice = PlaybackStream::play("mic-voice", 600);
    VERIFY_SOON(hearsInTime(600, 1000));
    QTEST(recorder_.format().channelCount, "channelCount");
  }

  void withoutAMicrophoneThereIsAClearError() {
    // The session manager offers the output's monitor as the default source.
    QVERIFY(server_->awaitDefaultSource("speakers"));
    QCOMPARE(startFailure(), QString("No microphone was found"));
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(startFailure(), QString("마이크를 찾을 수 없습니다"));
    QCOMPARE(recorder_.bufferCount(), std::size_t(0));
  }

  void withoutAServerThereIsAClearError() {
    server_->killDaemon();
    QCOMPARE(startFailure(), QString("The sound server can’t be reached"));
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(startFailure(), QString("사운드 서버에 연결할 수 없습니다"));
  }

  void aMicrophoneThatGoesIsNeverReplacedByTheComputer() {
    QVERIFY(server_->addMicrophone("mic"));
    QVERIFY(server_->awaitDefaultSource("mic"));
    source_->start(recorder_.handler());
    const auto computer = PlaybackStream::play("speakers", 1000);
    auto voice = PlaybackStream::play("mic-voice", 600);
    VERIFY_SOON(hearsInTime(600, 1000));
    voice.reset();
    QVERIFY(server_->remove("mic"));
    QVERIFY(server_->remove("mic-voice"));
    QVERIFY(server_->awaitDefaultSource("speakers"));
    clock_.advance(60s);
    QVERIFY(PrivatePipeWire::node("Velun Microphone").isEmpty());

    QVERIFY(server_->addMicrophone("mic"));
    QVERIFY(server_->awaitDefaultSource("mic"));
    recorder_.clear();
    voice = PlaybackStream::play("mic-voice", 600);
    VERIFY_SOON(hearsInTime(600, 1000));
    QVERIFY(reports_.isEmpty());
  }

  void theDefaultMicrophoneIsFollowed() {
    QVERIFY(server_->addMicrophone("mic"));
    QVERIFY(server_->addMicrophone("headset", 44'100, "MONO"));
    QVERIFY(server_->setDefaultSource("mic"));
    source_->start(recorder_.handler());
    const auto voice = PlaybackStream::play("mic-voice", 600);
    const auto other = PlaybackStream::play("headset-voice", 1700);
    VERIFY_SOON(hearsInTime(600, 1700));
    QVERIFY(server_->setDefaultSource("headset"));
    VERIFY_SOON(hearsInTime(1700, 600));
    QVERIFY(reports_.isEmpty());
  }

  void aServerThatRestartsIsReachedAgain() {
    QVERIFY(server_->addMicrophone("mic"));
    QVERIFY(server_->awaitDefaultSource("mic"));
    source_->start(recorder_.handler());
    server_->killDaemon();
    QTRY_COMPARE_WITH_TIMEOUT(reports_, QList{AudioInterruption::began}, limit);
    QVERIFY(server_->start());
    QVERIFY(server_->addMicrophone("mic"));
    QVERIFY(server_->awaitDefaultSource("mic"));
    const auto voice = PlaybackStream::play("mic-voice", 600);
    VERIFY_SOON(hearsInTime(600, 1000));
    QCOMPARE(reports_, QList({AudioInterruption::began, AudioInterruption::ended}));
  }

  void bothSourcesRunAtOnce() {
    QVERIFY(server_->addMicrophone("mic"));
    QVERIFY(server_->awaitDefaultSource("mic"));
    Recorder computerRecorder;
    SystemAudio computer(platform_.makeHardware(nullptr));
    computer.start(computerRecorder.handler());
    source_->start(recorder_.handler());
    const auto sound = PlaybackStream::play("speakers", 1000);
    const auto voice = PlaybackStream::play("mic-voice", 600);
    VERIFY_SOON(computerRecorder.hearsOnly(1000, 600));
    VERIFY_SOON(hearsInTime(600, 1000));
    computer.stop();
  }

 private:
  /// While time goes on: what the session manager forgets is made good after a while.
  bool hearsInTime(double frequency, double other) {
    clock_.advance(20ms);
    return recorder_.hearsOnly(frequency, other);
  }

  QString startFailure() {
    try {
      source_->start(recorder_.handler());
    } catch (const Failure& failure) {
      return failure.errorDescription();
    }
    return {};
  }

  Recorder recorder_;
  ManualClock clock_;
  PipeWireAudioPlatform platform_{clock_};
  std::unique_ptr<PrivatePipeWire> server_;
  QList<AudioInterruption> reports_;
  std::unique_ptr<MicAudio> source_;
};

QTEST_GUILESS_MAIN(PipeWireMicrophoneTest)
#include "pipewire_microphone_test.moc"
