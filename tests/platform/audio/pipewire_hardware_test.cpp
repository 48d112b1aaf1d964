// SPDX-License-Identifier: GPL-3.0-or-later
#include "audio/system_audio.h"
#include "platform/audio/linux/pipewire_audio_platform.h"
#include "platform/foundation/failure.h"
#include "platform/foundation/system_clock.h"
#include "support/playback_stream.h"
#include "support/private_pipewire.h"
#include "support/recorder.h"
#include "support/suite.h"

#include <cerrno>
#include <sys/resource.h>
#include <unistd.h>

using namespace velun;
using namespace velun::test;

namespace {

const AudioFormat stereo{AudioFormat::Sample::float32, 48'000, 2, true};

QString failureOf(SystemAudio* source) {
  try {
    source->start([](const PcmBuffer&) {});
  } catch (const Failure& failure) {
    return failure.errorDescription();
  }
  return {};
}

}  // namespace

/// The operations of the hardware as a sound server answers them, from none to a silent one.
class PipeWireHardwareTest final : public Suite {
  Q_OBJECT

 private Q_SLOTS:
  // The tests go on from each other: more of the server is there each time.

  void withoutAServerThereIsNoTap() {
    SystemAudio source(platform_.makeHardware(nullptr));
    QCOMPARE(failureOf(&source), QString("Audio tap creation failed (%1)").arg(-EHOSTDOWN));
    QCOMPARE(source.tapID(), 0U);
    source.stop();
  }

  void withoutASessionManagerThereIsNoOutput() {
    QVERIFY(server_.startDaemon());
    SystemAudio source(platform_.makeHardware(nullptr));
    QCOMPARE(failureOf(&source), QString("Output device lookup failed (%1)").arg(-ENODEV));
    source.stop();
  }

  void withoutAnOutputTheLookupFails() {
    QVERIFY(server_.startManager());
    SystemAudio source(platform_.makeHardware(nullptr));
    QCOMPARE(failureOf(&source), QString("Output device lookup failed (%1)").arg(-ENODEV));
    QVERIFY(source.tapID() != 0);
    source.stop();
    QCOMPARE(source.tapID(), 0U);
  }

  void withoutDescriptorsTheStartFails() {
    rlimit usual{};
    QCOMPARE(getrlimit(RLIMIT_NOFILE, &usual), 0);
    const int first = dup(STDOUT_FILENO);
    QVERIFY(first >= 0);
    close(first);
    int failures = 0;
    for (rlim_t spare = 0; spare < 14; ++spare) {
      SystemAudio source(platform_.makeHardware(nullptr));
      const rlimit few{rlim_t(first) + spare, usual.rlim_max};
      QCOMPARE(setrlimit(RLIMIT_NOFILE, &few), 0);
      const QString failure = failureOf(&source);
      source.stop();
      QCOMPARE(setrlimit(RLIMIT_NOFILE, &usual), 0);
      if (failure.startsWith("Audio tap creation failed (-")) ++failures;
    }
    QVERIFY(failures > 3);
  }

  void everyOperationAnswers() {
    QVERIFY(server_.addSink("speakers", 44'100));
    QVERIFY(server_.awaitDefaultSink("speakers"));
    const auto hardware = platform_.makeHardware(nullptr);
    AudioObjectID tap = 0;
    AudioFormat format;
    AudioObjectID output = 0;
    std::optional<QString> uid;
    AudioObjectID device = 0;
    AudioDeviceIOProcID procedure = 0;
    QCOMPARE(hardware->createProcessTap({}, &tap), 0);
    QCOMPARE(hardware->tapFormat(tap, &format), 0);
    QVERIFY(format.sampleRate > 0);
    QCOMPARE(format.channelCount, 2);
    QCOMPARE(hardware->defaultSystemOutputDevice(&output), 0);
    QCOMPARE(hardware->deviceUID(output, &uid), 0);
    QCOMPARE(uid, std::optional<QString>("speakers"));
    AggregateDeviceDescription description;
    description.name = "Velun Tap";
    QCOMPARE(hardware->createAggregateDevice(description, &device), 0);
    QCOMPARE(hardware->audioDeviceCreateIOProcID(
                 device, [](const PcmBuffer&) {}, &procedure),
             0);
    QCOMPARE(hardware->audioDeviceStart(device, procedure), 0);
    QCOMPARE(hardware->audioDeviceStop(device, procedure), 0);
    QCOMPARE(hardware->audioDeviceDestroyIOProcID(device, procedure), 0);
    QCOMPARE(hardware->destroyAggregateDevice(device), 0);
    QCOMPARE(hardware->destroyProcessTap(tap), 0);
  }

  void whatDoesNotExistIsRefused() {
    const auto hardware = platform_.makeHardware(nullptr);
    AudioFormat format;
    AudioObjectID id = 0;
    AudioDeviceIOProcID procedure = 0;
    std::optional<QString> uid;
    QCOMPARE(hardware->tapFormat(1, &format), -EINVAL);
    QCOMPARE(hardware->createAggregateDevice({}, &id), -ENOTCONN);
    QCOMPARE(hardware->audioDeviceCreateIOProcID(
                 2, [](const PcmBuffer&) {}, &procedure),
             -EINVAL);
    QCOMPARE(hardware->audioDeviceStart(2, 1), -EINVAL);
    QCOMPARE(hardware->audioDeviceStop(2, 1), -EINVAL);
    QCOMPARE(hardware->audioDeviceDestroyIOProcID(2, 1), -EINVAL);
    QCOMPARE(hardware->destroyAggregateDevice(2), -EINVAL);
    QCOMPARE(hardware->destroyProcessTap(1), -EINVAL);
    QCOMPARE(hardware->createProcessTap({}, &id), 0);
    QCOMPARE(hardware->deviceUID(4'000'000, &uid), -ENODEV);
  }

  void theNodeIsPrivateAndGoesWithTheRun() {
    SystemAudio source(platform_.makeHardware(nullptr));
    QCOMPARE(failureOf(&source), QString());
    const QJsonValue properties = PrivatePipeWire::node("Velun Tap").value("props");
    // Neither a device that programs are offered nor a stream that mixers list.
    QCOMPARE(properties["media.class"].toString(), QString("Stream/Input/Audio/Internal"));
    QCOMPARE(properties["application.id"].toString(), QString("app.velun.Velun"));
    source.stop();
    VERIFY_SOON(PrivatePipeWire::node("Velun Tap").isEmpty());
  }

  void silenceLetsTheSoundCardSleep() {
    Recorder recorder;
    SystemAudio source(platform_.makeHardware(nullptr));
    source.start(recorder.handler());
    {
      const PlaybackStream player(stereo, {}, PlaybackStream::tone(1000, 48'000, 0.5F));
      VERIFY_SOON(recorder.level(4'800) > 0.3);
      QCOMPARE(PrivatePipeWire::stateOf("speakers"), QString("running"));
    }
    VERIFY_SOON(PrivatePipeWire::stateOf("speakers") == "suspended");
    const std::size_t asleep = recorder.bufferCount();
    // The session manager had it sleep only because nothing came through.
    QCOMPARE(PrivatePipeWire::stateOf("speakers"), QString("suspended"));
    QCOMPARE(recorder.bufferCount(), asleep);
    recorder.clear();
    const PlaybackStream player(stereo, {}, PlaybackStream::tone(2000, 48'000, 0.5F));
    VERIFY_SOON(std::abs(recorder.amplitudeAt(2000, 4'800) - 0.5) < 0.01);
    source.stop();
  }

 private:
  PrivatePipeWire server_;
  SystemClock clock_;
  PipeWireAudioPlatform platform_{clock_, std::chrono::seconds(1)};
};

QTEST_GUILESS_MAIN(PipeWireHardwareTest)
#include "pipewire_hardware_test.moc"
