// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/settings/device_chooser.h"

#include "language/localization.h"
#include "support/scripted_audio_platform.h"
#include "support/suite.h"

#include <QPointer>

using namespace velun;

namespace {

const std::vector<AudioTarget> kDevices = {
    {AudioTarget::Kind::output, "hdmi", "Television"},
    {AudioTarget::Kind::output, "usb-speakers", "Speakers"},
    {AudioTarget::Kind::input, "usb-mic", "Desk Microphone"}};

struct Fixture {
  Fixture() {
    audio.onFollow = [this](test::ScriptedAudioTargets& followed) {
      targets = &followed;
      followed.set(kDevices);
    };
  }

  QStringList items() const {
    QStringList texts;
    for (int i = 0; i < chooser.count(); ++i) texts << chooser.itemText(i);
    return texts;
  }
  /// As the user does.
  void choose(int index) {
    chooser.setCurrentIndex(index);
    Q_EMIT chooser.activated(index);
  }

  test::ScriptedAudioPlatform audio;
  QPointer<test::ScriptedAudioTargets> targets;
  AppSettings settings;
  DeviceChooser chooser{settings, audio};
};

}  // namespace

class DeviceChooserTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void offersTheDevicesOfTheInput() {
    Fixture f;
    f.chooser.show();
    QCOMPARE(f.items(), (QStringList{"The Computer’s Default Output", "Television", "Speakers"}));
    QCOMPARE(f.chooser.currentIndex(), 0);
    f.chooser.setInput(AudioInput::microphone);
    QCOMPARE(f.items(), (QStringList{"The Computer’s Default Microphone", "Desk Microphone"}));
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(f.items().first(), QString("컴퓨터의 기본 마이크"));
  }

  void storesTheChosenDevice() {
    Fixture f;
    f.chooser.show();
    f.choose(1);
    QCOMPARE(f.settings.output(), (DeviceChoice{"hdmi", "Television"}));
    QCOMPARE(f.chooser.currentText(), QString("Television"));
    f.choose(0);
    QCOMPARE(f.settings.output(), DeviceChoice());
    f.chooser.setInput(AudioInput::microphone);
    f.choose(1);
    QCOMPARE(f.settings.microphone(), (DeviceChoice{"usb-mic", "Desk Microphone"}));
    QCOMPARE(f.settings.output(), DeviceChoice());
  }

  void aProgramCanBeChosenInsteadOfAnOutput() {
    using Scope = ProgramChoice::Scope;
    Fixture f;
    f.chooser.show();
    auto playing = kDevices;
    playing.push_back({AudioTarget::Kind::program, "Firefox", "Firefox"});
    f.targets->set(playing);
    QCOMPARE(f.items(), (QStringList{"The Computer’s Default Output", "Television", "Speakers",
                                     "Only Firefox", "All Except Firefox"}));
    f.choose(4);
    QCOMPARE(f.settings.program(), (ProgramChoice{Scope::allBut, "Firefox"}));
    QCOMPARE(f.chooser.currentIndex(), 4);
    f.targets->set(kDevices);
    QCOMPARE(f.chooser.currentText(), QString("All Except Firefox"));
    f.chooser.setInput(AudioInput::microphone);
    QCOMPARE(f.items(), (QStringList{"The Computer’s Default Microphone", "Desk Microphone"}));
    f.chooser.setInput(AudioInput::computer);
    f.choose(1);
    QCOMPARE(f.settings.program(), ProgramChoice());
    QCOMPARE(f.settings.output(), (DeviceChoice{"hdmi", "Television"}));
  }

  void aMissingDeviceStaysChosen() {
    Fixture f;
    f.settings.setOutput({"hdmi", "Television"});
    f.chooser.show();
    QCOMPARE(f.chooser.currentText(), QString("Television"));
    f.targets->set({kDevices[1]});
    QCOMPARE(f.chooser.currentText(), QString("Television (not connected)"));
    f.choose(f.chooser.currentIndex());
    QCOMPARE(f.settings.output(), (DeviceChoice{"hdmi", "Television"}));
    f.targets->set(kDevices);
    QCOMPARE(f.chooser.currentText(), QString("Television"));
  }

  void followsTheDevicesOnlyWhileItIsShown() {
    Fixture f;
    QVERIFY(!f.targets);
    f.chooser.show();
    QVERIFY(f.targets);
    f.chooser.hide();
    QVERIFY(!f.targets);
  }
};

QTEST_MAIN(DeviceChooserTest)
#include "device_chooser_test.moc"
