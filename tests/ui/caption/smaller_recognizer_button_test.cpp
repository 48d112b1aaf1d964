// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/smaller_recognizer_button.h"

#include "language/localization.h"
#include "platform/speech/recognizer_preferences.h"
#include "support/suite.h"
#include "ui/caption/caption_button.h"
#include "ui/caption/caption_status_line.h"
#include "ui/caption/caption_view.h"
#include "ui/caption/panel_stage.h"
#include "ui/caption/transcript_view.h"

using namespace velun;
using namespace velun::test;

namespace {

/// A shown panel on a machine that is too slow for the recognizer in use.
struct Fixture {
  explicit Fixture(bool isSmallerInstalled) {
    RecognizerCandidate used;
    used.id = "used";
    used.isInstalled = true;
    used.modelBytes = 600;
    RecognizerCandidate small;
    small.id = "small";
    small.title = "Small";
    small.modelBytes = 60;
    small.isInstalled = isSmallerInstalled;
    speech.script->candidates = {used, small};
    stage.panel().setAttribute(Qt::WA_DontShowOnScreen);
    stage.controller->show();
    settle();
  }

  SmallerRecognizerButton& view() const { return stage.view->smallerRecognizer(); }

  ScriptedSpeechPlatform speech;
  RecognizerPreferences preferences;
  AppSettings settings;
  SmallerRecognizer smaller{speech, preferences, settings};
  PanelStage stage{{}, nullptr, nullptr, nullptr, &smaller};
};

}  // namespace

class SmallerRecognizerButtonTest final : public Suite {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void installedRecognizerIsUsedAtOneClick() {
    Fixture f(true);
    QVERIFY(!f.view().isVisible());
    const int height = f.stage.view->transcript().height();
    f.smaller.find();
    QVERIFY(f.view().isVisible());
    QCOMPARE(f.view().button().text(), QString("Use “Small”"));
    // The captions keep clear of it.
    QVERIFY(f.stage.view->transcript().height() < height);
    QVERIFY(!f.stage.view->transcript().geometry().intersects(f.view().geometry()));
    QVERIFY(!f.stage.view->statusLine().geometry().intersects(f.view().geometry()));
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(f.view().button().text(), QString("‘Small’ 사용"));
    f.view().button().click();
    QCOMPARE(f.preferences.choice("en_US"), QString("small"));
    QVERIFY(!f.view().isVisible());
    QCOMPARE(f.stage.view->transcript().height(), height);
  }

  void missingRecognizerLeadsToTheModels() {
    Fixture f(false);
    f.smaller.find();
    QCOMPARE(f.view().button().text(), QString("Choose a Smaller Model…"));
    int requests = 0;
    QObject::connect(&f.stage.commands.action(AppCommand::showModels), &QAction::triggered,
                     [&requests] { ++requests; });
    f.view().button().click();
    QCOMPARE(requests, 1);
    QVERIFY(!f.view().isVisible());
    QVERIFY(f.preferences.choice("en_US").isEmpty());
  }
};

QTEST_MAIN(SmallerRecognizerButtonTest)
#include "smaller_recognizer_button_test.moc"
