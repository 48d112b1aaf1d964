// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/caption_devices.h"

#include "language/localization.h"
#include "platform/foundation/failure.h"
#include "support/manual_clock.h"
#include "support/scripted_audio_platform.h"
#include "support/suite.h"

using namespace velun;

namespace {

constexpr auto kOutput = AudioTarget::Kind::output;
constexpr auto kInput = AudioTarget::Kind::input;

const std::vector<AudioTarget> kDevices = {{kOutput, "hdmi", "Television"},
                                           {kInput, "usb-mic", "Desk Microphone"}};

QString refusal(const QString& wanted, AudioInput input) {
  try {
    deviceNamed(wanted, input, kDevices);
  } catch (const Failure& failure) {
    return failure.errorDescription();
  }
  return {};
}

}  // namespace

class CaptionDevicesTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void aDeviceIsFoundByIdAndByName() {
    QCOMPARE(deviceNamed("hdmi", AudioInput::computer, kDevices), kDevices[0]);
    QCOMPARE(deviceNamed("television", AudioInput::computer, kDevices), kDevices[0]);
    QCOMPARE(deviceNamed("Desk Microphone", AudioInput::microphone, kDevices), kDevices[1]);
  }

  void withoutANameTheDefaultIsMeant() {
    QCOMPARE(deviceNamed({}, AudioInput::computer, {}), (AudioTarget{kOutput, {}, {}}));
    QCOMPARE(deviceNamed({}, AudioInput::microphone, {}), (AudioTarget{kInput, {}, {}}));
  }

  void anUnknownDeviceIsRefused() {
    QCOMPARE(refusal("usb-mic", AudioInput::computer),
             QString("There is no output “usb-mic”; --list-devices shows them."));
    QCOMPARE(refusal("hdmi", AudioInput::microphone),
             QString("There is no microphone “hdmi”; --list-devices shows them."));
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(refusal("tv", AudioInput::computer),
             QString("“tv” 출력 장치가 없습니다. --list-devices로 볼 수 있습니다."));
  }

  void everyDeviceIsListed() {
    QCOMPARE(deviceList(kDevices), QString("computer\thdmi\tTelevision\n"
                                           "microphone\tusb-mic\tDesk Microphone\n"));
    QCOMPARE(deviceList({{AudioTarget::Kind::program, "Firefox", "Firefox"}}),
             QString("program\tFirefox\tFirefox\n"));
  }

  void theListIsWaitedFor() {
    test::ScriptedAudioPlatform audio;
    test::ManualClock clock;
    audio.onFollow = [](test::ScriptedAudioTargets& targets) {
      QMetaObject::invokeMethod(
          &targets, [&targets] { targets.set(kDevices); }, Qt::QueuedConnection);
    };
    QCOMPARE(currentDevices(audio, clock), kDevices);
    QCOMPARE(clock.scheduledCount(), std::size_t(0));
    audio.onFollow = [&clock](test::ScriptedAudioTargets& targets) {
      QMetaObject::invokeMethod(
          &targets, [&clock] { clock.advance(std::chrono::seconds(2)); }, Qt::QueuedConnection);
    };
    QVERIFY(currentDevices(audio, clock).empty());
  }
};

QTEST_GUILESS_MAIN(CaptionDevicesTest)
#include "caption_devices_test.moc"
