// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/menubar/status_menu.h"

#include "captions/model_fixture.h"
#include "language/localization.h"
#include "support/suite.h"

using namespace velun;
using test::ModelFixture;

namespace {

struct Fixture : ModelFixture {
  using ModelFixture::ModelFixture;

  QStringList titles() const {
    QStringList titles;
    for (const QAction* item : menu.actions()) titles << (item->isSeparator() ? "-" : item->text());
    return titles;
  }

  WindowState windows{.canClickThrough = true};
  AppCommands commands{*model, [this] {
                         return windows;
                       }};
  StatusMenu menu{*model, commands};
  // Places of the items.
  const QAction& captions = *menu.actions()[0];
  const QAction& computer = *menu.actions()[2];
  const QAction& microphone = *menu.actions()[3];
  const QAction& both = *menu.actions()[4];
  const QAction& keepOnTop = *menu.actions()[6];
  const QAction& save = *menu.actions()[11];
  const QAction& newSession = *menu.actions()[13];
};

}  // namespace

class StatusMenuTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void itemsAreInOrder() {
    Fixture fixture;
    QCOMPARE(fixture.titles(),
             QStringList({"Start Captions", "-", "Computer Audio", "Microphone",
                          "Computer and Microphone", "-", "Keep on Top", "Click Through Captions",
                          "Show Caption Window", "Restore Default Position", "-",
                          "Save Current Session", "Saved Sessions…", "New Session", "-",
                          "Settings…", "Check for Updates…", "Quit Velun"}));
  }

  void itemsAreLocalized() {
    Fixture fixture([](AppSettings& settings) { settings.setLanguage(AppLanguage::korean); });
    fixture.windows.isPanelVisible = true;
    fixture.commands.refresh();
    QCOMPARE(fixture.titles(),
             QStringList({"자막 시작", "-", "컴퓨터 오디오", "마이크", "컴퓨터와 마이크", "-",
                          "항상 위에 표시", "자막 창 클릭 통과", "자막 창 숨기기",
                          "기본 위치로 복원", "-", "현재 세션 저장", "저장 기록…", "새 세션", "-",
                          "설정…", "업데이트 확인…", "Velun 종료"}));
  }

  void onlyQuitHasAShortcut() {
    Fixture fixture;
    for (const QAction* item : fixture.menu.actions()) {
      QCOMPARE(item->shortcut(), QKeySequence(item->text() == "Quit Velun" ? "Ctrl+Q" : ""));
    }
  }

  void captionsItemFollowsTheEngine() {
    Fixture fixture;
    fixture.engine->holdsStarts = true;
    fixture.start();
    QCOMPARE(fixture.captions.text(), QString("Switching Captions…"));
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(fixture.captions.text(), QString("자막 전환 중…"));
    fixture.engine->release();
    test::settle();
    QCOMPARE(fixture.captions.text(), QString("자막 중지"));
    Localization::shared().setLanguage(AppLanguage::english);
    QCOMPARE(fixture.captions.text(), QString("Stop Captions"));
    fixture.stop();
    QCOMPARE(fixture.captions.text(), QString("Start Captions"));
  }

  void transitionDisablesEngineCommands() {
    Fixture fixture;
    fixture.engine->holdsStarts = true;
    fixture.start();
    const std::vector<const QAction*> disabled = {&fixture.captions,   &fixture.computer,
                                                  &fixture.microphone, &fixture.both,
                                                  &fixture.newSession, &fixture.save};
    for (const QAction* item : fixture.menu.actions()) {
      QCOMPARE(item->isEnabled(), std::ranges::count(disabled, item) == 0);
    }
    fixture.engine->release();
    test::settle();
  }

  void downloadCanBeStopped() {
    Fixture fixture;
    fixture.engine->holdsStarts = true;
    fixture.engine->downloads = true;
    fixture.start();
    QCOMPARE(fixture.captions.text(), QString("Stop Captions"));
    for (const QAction* item : fixture.menu.actions()) {
      QCOMPARE(item->isEnabled(), item != &fixture.save);
    }
    fixture.stop();
    QCOMPARE(fixture.captions.text(), QString("Start Captions"));
  }

  void theChosenInputIsChecked() {
    Fixture fixture;
    QVERIFY(fixture.computer.isChecked());
    QVERIFY(!fixture.microphone.isChecked());
    fixture.settings.setUseMic(true);
    QVERIFY(!fixture.computer.isChecked());
    QVERIFY(fixture.microphone.isChecked());
  }

  void keepOnTopIsCheckedWhileOn() {
    Fixture fixture;
    QVERIFY(fixture.keepOnTop.isChecked());
    fixture.settings.setKeepOnTop(false);
    QVERIFY(!fixture.keepOnTop.isChecked());
  }

  void nothingToSaveDisablesSaving() {
    Fixture fixture;
    QVERIFY(!fixture.save.isEnabled());
    QVERIFY(!fixture.save.isChecked());
  }

  void savedSessionIsCheckedAndDisabled() {
    Fixture fixture;
    fixture.final("One line.");
    QVERIFY(fixture.save.isEnabled());
    fixture.model->saveCurrentSession();
    QCOMPARE(fixture.save.text(), QString("Saving Current Session"));
    QVERIFY(fixture.save.isChecked());
    QVERIFY(!fixture.save.isEnabled());
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(fixture.save.text(), QString("현재 세션 저장 중"));
  }

  void failedSaveCanBeRetried() {
    Fixture fixture;
    fixture.final("One line.");
    fixture.model->saveCurrentSession();
    fixture.breakStore();
    fixture.final("Another.");
    QCOMPARE(fixture.save.text(), QString("Saving Current Session"));
    QVERIFY(fixture.save.isEnabled());
    QVERIFY(!fixture.save.isChecked());
  }
};

QTEST_MAIN(StatusMenuTest)
#include "status_menu_test.moc"
