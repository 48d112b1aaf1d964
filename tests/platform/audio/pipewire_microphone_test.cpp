// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/localization.h"
#include "platform/audio/pipewire_suite.h"
#include "platform/foundation/failure.h"
#include "support/await.h"
#include "support/playback_stream.h"

using namespace velun;
using namespace velun::test;
using namespace std::chrono_literals;

namespace {

constexpr int limit = 20'000;
}  // namespace

/// The microphone beside a computer that plays something else.
class PipeWireMicrophoneTest final : public PipeWireSuite {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    PipeWireSuite::init();
    source_ = makeSource(platform_, {AudioTarget::Kind::input, {}, {}});
  }

  void cleanup() {
    Localization::shared().setLanguage(AppLanguage::english);
    PipeWireSuite::cleanup();
  }

  void theMicrophoneIsHeardAndNotTheComputer_data() {
    QTest::addColumn<int>("rate");
    QTest::addColumn<QString>("channels");
    QTest::newRow("mono") << 44'100 << "MONO";
    QTest::newRow("stereo") << 48'000 << "FL FR";
  }
  void theMicrophoneIsHeardAndNotTheComputer() {
    QFETCH(int, rate);
    QFETCH(QString, channels);
    QVERIFY(server_->addMicrophone("mic", rate, channels));
    QVERIFY(server_->awaitDefaultSource("mic"));
    await(source_->start(recorder_.handler()));
    const auto computer = PlaybackStream::play("speakers", 1000);
    const auto voice = PlaybackStream::play("mic-voice", 600);
    VERIFY_SOON(hearsInTime(600, 1000));
  }

  void oneOfEightInputsKeepsItsLevel() {
    QVERIFY(server_->addMicrophone("mic", 48'000, "AUX0 AUX1 AUX2 AUX3 AUX4 AUX5 AUX6 AUX7"));
    QVERIFY(server_->awaitDefaultSource("mic"));
    await(source_->start(recorder_.handler()));
    const PlaybackStream voice({true, 48'000, 8}, "mic-voice",
                               PlaybackStream::tone(600, 48'000, 0.5F), 5);
    VERIFY_SOON(hearsInTime(600, 1000));
  }

  void withoutAMicrophoneThereIsAClearError() {
    // The session manager chooses the output's monitor as the default source.
    QVERIFY(server_->awaitDefaultSource("speakers"));
    QCOMPARE(startFailure(),
             QString("Microphone lookup failed. No microphone was found. Connect one, or turn one "
                     "on in the sound settings."));
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(startFailure(), QString("마이크 조회 실패. 마이크를 찾을 수 없습니다. 마이크를 "
                                     "연결하거나 사운드 설정에서 켜세요."));
    QCOMPARE(recorder_.bufferCount(), std::size_t(0));
  }

  void withoutAServerThereIsAClearError() {
    server_->killDaemon();
    QCOMPARE(startFailure(), QString("Microphone start failed. The sound server (PipeWire) is not "
                                     "running. Start it, or log in again."));
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(startFailure(), QString("마이크 시작 실패. 사운드 서버(PipeWire)가 실행되고 있지 "
                                     "않습니다. 서버를 시작하거나 다시 로그인하세요."));
  }

  void aMicrophoneThatGoesIsNeverReplacedByTheComputer() {
    QVERIFY(server_->addMicrophone("mic"));
    QVERIFY(server_->awaitDefaultSource("mic"));
    await(source_->start(recorder_.handler()));
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
    await(source_->start(recorder_.handler()));
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
    await(source_->start(recorder_.handler()));
    server_->killDaemon();
    QTRY_COMPARE_WITH_TIMEOUT(reports_, QStringList{"interrupted"}, limit);
    QVERIFY(server_->start());
    QVERIFY(server_->addMicrophone("mic"));
    QVERIFY(server_->awaitDefaultSource("mic"));
    const auto voice = PlaybackStream::play("mic-voice", 600);
    VERIFY_SOON(hearsInTime(600, 1000));
    QCOMPARE(reports_, QStringList({"interrupted", "resumed"}));
  }

  void bothSourcesRunAtOnce() {
    QVERIFY(server_->addMicrophone("mic"));
    QVERIFY(server_->awaitDefaultSource("mic"));
    Recorder computerRecorder;
    const auto computer = platform_.makeSource({});
    await(computer->start(computerRecorder.handler()));
    await(source_->start(recorder_.handler()));
    const auto sound = PlaybackStream::play("speakers", 1000);
    const auto voice = PlaybackStream::play("mic-voice", 600);
    VERIFY_SOON(computerRecorder.hearsOnly(1000, 600));
    VERIFY_SOON(hearsInTime(600, 1000));
  }

 private:
  /// Advances the clock, and with it every timeout, until the start has failed.
  QString startFailure() {
    const auto source = platform_.makeSource({AudioTarget::Kind::input, {}, {}});
    const auto end = std::make_shared<TaskEnd>();
    const QCoro::Task<> following = followTask(source->start(recorder_.handler()), end);
    const bool hasEnded = QTest::qWaitFor(
        [&] {
          clock_.advance(20ms);
          return end->hasEnded;
        },
        limit);
    try {
      if (hasEnded && end->error) std::rethrow_exception(end->error);
    } catch (const Failure& failure) {
      return failure.errorDescription();
    }
    return {};
  }
};

QTEST_GUILESS_MAIN(PipeWireMicrophoneTest)
#include "pipewire_microphone_test.moc"
