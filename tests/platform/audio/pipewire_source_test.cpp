// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/localization.h"
#include "platform/audio/linux/pipewire_audio_platform.h"
#include "platform/foundation/system_clock.h"
#include "support/await.h"
#include "support/failure_of.h"
#include "support/playback_stream.h"
#include "support/private_pipewire.h"
#include "support/recorder.h"
#include "support/suite.h"

#include <QScopeGuard>
#include <sys/resource.h>
#include <unistd.h>

using namespace velun;
using namespace velun::test;

namespace {

const PlaybackFormat stereo;

}  // namespace

/// A source with a PipeWire that lacks everything at first; each test adds a part.
class PipeWireSourceTest final : public Suite {
  Q_OBJECT

 private Q_SLOTS:
  // The tests depend on each other: each adds a part of the server.

  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void startFailsWithoutServer() {
    QCOMPARE(startFailure(), QString("Audio start failed. The sound server (PipeWire) is not "
                                     "running. Start it, or log in again."));
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(startFailure(), QString("오디오 시작 실패. 사운드 서버(PipeWire)가 실행되고 있지 "
                                     "않습니다. 서버를 시작하거나 다시 로그인하세요."));
  }

  void startFailsWithoutConfiguration() {
    qputenv("PIPEWIRE_CONFIG_DIR", "/nonexistent");
    const auto restore = qScopeGuard([] { qunsetenv("PIPEWIRE_CONFIG_DIR"); });
    QCOMPARE(startFailure(), QString("Audio start failed. The configuration of the sound server "
                                     "(PipeWire) is missing. Reinstall PipeWire."));
  }

  void startFailsWithoutSessionManager() {
    QVERIFY(server_.startDaemon());
    QCOMPARE(startFailure(),
             QString("Output device lookup failed. The session manager of the sound server "
                     "(PipeWire) is not running. Start it, or log in again."));
  }

  void startFailsWithoutOutput() {
    QVERIFY(server_.startManager());
    QCOMPARE(startFailure(), QString("Output device lookup failed. No output device was found. "
                                     "Connect one, or turn one on in the sound settings."));
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(startFailure(), QString("출력 장치 조회 실패. 출력 장치를 찾을 수 없습니다. 장치를 "
                                     "연결하거나 사운드 설정에서 켜세요."));
  }

  void startFailsWithoutDescriptors() {
    rlimit usual{};
    QCOMPARE(getrlimit(RLIMIT_NOFILE, &usual), 0);
    const int first = dup(STDOUT_FILENO);
    QVERIFY(first >= 0);
    close(first);
    int failures = 0;
    for (rlim_t spare = 0; spare < 14; ++spare) {
      const auto source = platform_.makeSource({});
      const rlimit few{rlim_t(first) + spare, usual.rlim_max};
      QCOMPARE(setrlimit(RLIMIT_NOFILE, &few), 0);
      QCoro::Task<> starting = source->start([](std::span<const float>) {});
      QCOMPARE(setrlimit(RLIMIT_NOFILE, &usual), 0);
      if (failureOf(std::move(starting)).startsWith("Audio start failed. ")) ++failures;
    }
    QVERIFY(failures > 3);
  }

  void stopDuringStartCancelsIt() {
    const auto source = platform_.makeSource({});
    QCoro::Task<> starting = source->start([](std::span<const float>) {});
    source->stop();
    QCOMPARE(failureOf(std::move(starting)), QString("cancelled"));
  }

  void nodeIsPrivateAndEndsWithTheSource() {
    QVERIFY(server_.addSink("speakers", 44'100));
    QVERIFY(server_.awaitDefaultSink("speakers"));
    auto source = platform_.makeSource({});
    await(source->start([](std::span<const float>) {}));
    const QJsonValue properties = PrivatePipeWire::node("Velun Tap").value("props");
    // Neither a device that is offered to programs nor a stream that mixers list.
    QCOMPARE(properties["media.class"].toString(), QString("Stream/Input/Audio/Internal"));
    QCOMPARE(properties["application.id"].toString(), QString("app.velun.Velun"));
    source.reset();
    VERIFY_SOON(PrivatePipeWire::node("Velun Tap").isEmpty());
  }

  void silenceLetsTheOutputBeSuspended() {
    Recorder recorder;
    const auto source = platform_.makeSource({});
    await(source->start(recorder.handler()));
    {
      const PlaybackStream player(stereo, {}, PlaybackStream::tone(1000, 48'000, 0.5F));
      VERIFY_SOON(recorder.level(1'600) > 0.3);
      QCOMPARE(PrivatePipeWire::stateOf("speakers"), QString("running"));
    }
    VERIFY_SOON(PrivatePipeWire::stateOf("speakers") == "suspended");
    const std::size_t count = recorder.bufferCount();
    QCOMPARE(PrivatePipeWire::stateOf("speakers"), QString("suspended"));
    QCOMPARE(recorder.bufferCount(), count);
    recorder.clear();
    const PlaybackStream player(stereo, {}, PlaybackStream::tone(2000, 48'000, 0.5F));
    VERIFY_SOON(std::abs(recorder.amplitudeAt(2000, 1'600) - 0.5) < 0.01);
  }

  void targetsAreListedAndChangesAnnounced() {
    const auto targets = platform_.followTargets();
    int changes = 0;
    connect(targets.get(), &AudioTargets::changed, this, [&changes] { ++changes; });
    const AudioTarget speakers{AudioTarget::Kind::output, "speakers", "speakers"};
    VERIFY_SOON(targets->list() == std::vector{speakers});
    QCOMPARE(changes, 1);
    QVERIFY(server_.addMicrophone("mic"));
    const AudioTarget voice{AudioTarget::Kind::output, "mic-voice", "mic-voice"};
    const AudioTarget mic{AudioTarget::Kind::input, "mic", "mic"};
    VERIFY_SOON(targets->list() == (std::vector{voice, speakers, mic}));
    QVERIFY(changes > 1);
    QVERIFY(server_.remove("mic"));
    VERIFY_SOON(targets->list() == (std::vector{voice, speakers}));
  }

  void chosenOutputIsCapturedAlone() {
    QVERIFY(server_.addSink("headphones"));
    QVERIFY(server_.setDefaultSink("speakers"));
    Recorder recorder;
    const auto source = platform_.makeSource({AudioTarget::Kind::output, "headphones", {}});
    await(source->start(recorder.handler()));
    const auto speakers = PlaybackStream::play("speakers", 1000);
    auto headphones = PlaybackStream::play("headphones", 3000);
    VERIFY_SOON(recorder.hearsOnly(3000, 1000));
    headphones.reset();
    QVERIFY(server_.remove("headphones"));
    QVERIFY(server_.addSink("headphones"));
    recorder.clear();
    headphones = PlaybackStream::play("headphones", 2000);
    VERIFY_SOON(recorder.hearsOnly(2000, 1000));
  }

  void aChosenOutputThatIsMissingIsWaitedFor() {
    Recorder recorder;
    const auto source = platform_.makeSource({AudioTarget::Kind::output, "television", {}});
    QStringList presence;
    connect(source.get(), &AudioSource::deviceMissing, this, [&] { presence << "missing"; });
    connect(source.get(), &AudioSource::deviceFound, this, [&] { presence << "found"; });
    await(source->start(recorder.handler()));
    QCOMPARE(presence, QStringList{"missing"});
    QVERIFY(server_.addSink("television"));
    VERIFY_SOON(presence == (QStringList{"missing", "found"}));
    {
      const auto player = PlaybackStream::play("television", 2000);
      VERIFY_SOON(recorder.hearsOnly(2000, 1000));
    }
    QVERIFY(server_.remove("television"));
    VERIFY_SOON(presence == (QStringList{"missing", "found", "missing"}));
    source->stop();
    QVERIFY(server_.addSink("television"));
    QCOMPARE(presence.size(), 3);
  }

  void targetsFollowAServerThatRestarts() {
    const auto targets = platform_.followTargets();
    VERIFY_SOON(!targets->list().empty());
    server_.killDaemon();
    VERIFY_SOON(targets->list().empty());
    QVERIFY(server_.start());
    QVERIFY(server_.addSink("speakers"));
    VERIFY_SOON(targets->list().size() == 1);
  }

 private:
  QString startFailure() {
    const auto source = platform_.makeSource({});
    return failureOf(source->start([](std::span<const float>) {}));
  }

  PrivatePipeWire server_;
  SystemClock clock_;
  PipeWireAudioPlatform platform_{clock_, std::chrono::seconds(1)};
};

QTEST_GUILESS_MAIN(PipeWireSourceTest)
#include "pipewire_source_test.moc"
