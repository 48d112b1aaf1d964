// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/caption_target.h"

#include "language/localization.h"
#include "support/suite.h"

using namespace velun;
using Kind = AudioTarget::Kind;
using Scope = ProgramChoice::Scope;

class CaptionTargetTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void theChosenDeviceOfTheInput() {
    AppSettings settings;
    QCOMPARE(captionTargets(settings).first(), AudioTarget());
    settings.setOutput({"hdmi", "Television"});
    settings.setMicrophone({"usb-mic", "Desk"});
    QCOMPARE(captionTargets(settings).first(), (AudioTarget{Kind::output, "hdmi", "Television"}));
    settings.setUseMic(true);
    QCOMPARE(captionTargets(settings).first(), (AudioTarget{Kind::input, "usb-mic", "Desk"}));
    QCOMPARE(captionSourceTitle(settings), QString("Microphone"));
  }

  void aProgramInsteadOfTheOutput() {
    AppSettings settings;
    settings.setOutput({"hdmi", "Television"});
    settings.setProgram({Scope::only, "Firefox"});
    QCOMPARE(captionTargets(settings).first(), (AudioTarget{Kind::program, "Firefox", "Firefox"}));
    QCOMPARE(captionSourceTitle(settings), QString("Only Firefox"));
    settings.setProgram({Scope::allBut, "Music"});
    QCOMPARE(captionTargets(settings).first(),
             (AudioTarget{Kind::otherPrograms, "Music", "Music"}));
    QCOMPARE(captionSourceTitle(settings), QString("All Except Music"));
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(captionSourceTitle(settings), QString("Music 외 모두"));
    settings.setUseMic(true);
    QCOMPARE(captionTargets(settings).first().kind, Kind::input);
  }
};

QTEST_GUILESS_MAIN(CaptionTargetTest)
#include "caption_target_test.moc"
