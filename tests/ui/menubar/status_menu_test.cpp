// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/menubar/status_menu.h"

#include "captions/model_fixture.h"
#include "language/localization.h"
#include "support/suite.h"

using namespace velun;
using test::ModelFixture;

namespace {

MenuItem item(const ModelFixture& fixture, AppCommand command, bool isPanelVisible = false) {
  for (const MenuItem& candidate : statusMenuItems(*fixture.model, isPanelVisible)) {
    if (candidate.command == command) return candidate;
  }
  qFatal("The status menu has no such item");
}

QStringList titles(const ModelFixture& fixture, bool isPanelVisible = false) {
  QStringList titles;
  for (const MenuItem& one : statusMenuItems(*fixture.model, isPanelVisible)) {
    titles.append(one.command ? one.title : QString("-"));
  }
  return titles;
}

const std::vector<AppCommand> kDisabledInASwitch = {
    AppCommand::toggleCaptions, AppCommand::selectComputer, AppCommand::selectMicrophone,
    AppCommand::newSession};

}  // namespace

class StatusMenuTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void itemsStandInOrder() {
    ModelFixture fixture;
    QCOMPARE(titles(fixture),
             QStringList({"Start Captions", "-", "Computer Audio", "Microphone", "-", "Keep on Top",
                          "Show Caption Window", "Restore Default Position", "-",
                          "Save Current Session", "Saved Sessions…", "New Session", "-",
                          "Settings…", "Check for Updates…", "Quit Velun"}));
  }

  void itemsAreInKoreanToo() {
    ModelFixture fixture([](AppSettings& settings) { settings.setLanguage(AppLanguage::korean); });
    QCOMPARE(titles(fixture, true),
             QStringList({"자막 시작", "-", "컴퓨터 오디오", "마이크", "-", "항상 위에 표시",
                          "자막 창 숨기기", "기본 위치로 복원", "-", "현재 세션 저장", "저장 기록…",
                          "새 세션", "-", "설정…", "업데이트 확인…", "Velun 종료"}));
  }

  void onlyQuitHasAKey() {
    ModelFixture fixture;
    for (const MenuItem& one : statusMenuItems(*fixture.model, false)) {
      QCOMPARE(!one.key.isEmpty(), one.command == AppCommand::terminate);
    }
    QCOMPARE(item(fixture, AppCommand::terminate).key, QKeySequence("Ctrl+Q"));
  }

  void captionsItemFollowsTheEngine() {
    ModelFixture fixture;
    fixture.engine->holdsStarts = true;
    fixture.start();
    QCOMPARE(item(fixture, AppCommand::toggleCaptions).title, QString("Switching Captions…"));
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(item(fixture, AppCommand::toggleCaptions).title, QString("자막 전환 중…"));
    fixture.engine->release();
    test::settle();
    QCOMPARE(item(fixture, AppCommand::toggleCaptions).title, QString("자막 중지"));
    Localization::shared().setLanguage(AppLanguage::english);
    QCOMPARE(item(fixture, AppCommand::toggleCaptions).title, QString("Stop Captions"));
    fixture.stop();
    QCOMPARE(item(fixture, AppCommand::toggleCaptions).title, QString("Start Captions"));
  }

  void aSwitchDisablesWhatDependsOnTheEngine() {
    ModelFixture fixture;
    fixture.engine->holdsStarts = true;
    fixture.start();
    for (const MenuItem& one : statusMenuItems(*fixture.model, true)) {
      if (!one.command) continue;
      const bool isHeld = std::ranges::count(kDisabledInASwitch, *one.command) > 0 ||
                          *one.command == AppCommand::saveSession;
      QCOMPARE(one.isEnabled, !isHeld);
    }
    fixture.engine->release();
    test::settle();
  }

  void theChosenInputIsChecked() {
    ModelFixture fixture;
    QVERIFY(item(fixture, AppCommand::selectComputer).isChecked);
    QVERIFY(!item(fixture, AppCommand::selectMicrophone).isChecked);
    fixture.settings.setUseMic(true);
    QVERIFY(!item(fixture, AppCommand::selectComputer).isChecked);
    QVERIFY(item(fixture, AppCommand::selectMicrophone).isChecked);
  }

  void keepOnTopIsCheckedWhileOn() {
    ModelFixture fixture;
    QVERIFY(item(fixture, AppCommand::toggleKeepOnTop).isChecked);
    fixture.settings.setKeepOnTop(false);
    QVERIFY(!item(fixture, AppCommand::toggleKeepOnTop).isChecked);
  }

  void nothingToSaveDisablesSaving() {
    ModelFixture fixture;
    const MenuItem save = item(fixture, AppCommand::saveSession);
    QVERIFY(!save.isEnabled);
    QVERIFY(!save.isChecked);
  }

  void aWrittenSessionIsCheckedAndDone() {
    ModelFixture fixture;
    fixture.final("One line.");
    QVERIFY(item(fixture, AppCommand::saveSession).isEnabled);
    fixture.model->saveCurrentSession();
    const MenuItem save = item(fixture, AppCommand::saveSession);
    QCOMPARE(save.title, QString("Saving Current Session"));
    QVERIFY(save.isChecked);
    QVERIFY(!save.isEnabled);
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(item(fixture, AppCommand::saveSession).title, QString("현재 세션 저장 중"));
  }

  void aFailedWriteCanBeRepeated() {
    ModelFixture fixture;
    fixture.final("One line.");
    fixture.model->saveCurrentSession();
    fixture.breakStore();
    fixture.final("Another.");
    const MenuItem save = item(fixture, AppCommand::saveSession);
    QCOMPARE(save.title, QString("Saving Current Session"));
    QVERIFY(save.isEnabled);
    QVERIFY(!save.isChecked);
  }
};

QTEST_MAIN(StatusMenuTest)
#include "status_menu_test.moc"
