// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/menubar/main_menu.h"

#include "language/localization.h"
#include "support/suite.h"

#include <QApplication>
#include <QLineEdit>
#include <QMenuBar>
#include <QVBoxLayout>

using namespace velun;

namespace {

struct Fixture {
  Fixture() {
    MenuBarActions actions;
    actions.perform = [this](AppCommand command) {
      performed.push_back(command);
    };
    actions.validate = [this](AppCommand command) {
      CommandValidation validation = {.isEnabled = disabled != command, .title = {}};
      if (command == AppCommand::saveDocument) validation.title = saveTitle;
      return validation;
    };
    menu = std::make_unique<MainMenu>(actions);
  }

  /// "title key", one a line.
  QStringList items(int index) const {
    QStringList items;
    for (const QAction* action : menu->menus()[std::size_t(index)]->actions()) {
      items.append(action->isSeparator()
                       ? QString("-")
                       : (action->text() + " " + action->shortcut().toString()).trimmed());
    }
    return items;
  }

  QAction* action(const QString& title) const {
    for (const QMenu* one : menu->menus()) {
      for (QAction* candidate : one->actions()) {
        if (candidate->text() == title) return candidate;
      }
    }
    return nullptr;
  }

  std::vector<AppCommand> performed;
  std::optional<AppCommand> disabled;
  QString saveTitle = "Save Current Session";
  std::unique_ptr<MainMenu> menu;
};

}  // namespace

class MainMenuTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void menusHoldTheirItemsAndKeys() {
    Fixture fixture;
    QCOMPARE(fixture.menu->menus()[0]->title(), QString("Velun"));
    QCOMPARE(fixture.items(0),
             QStringList({"About Velun", "Settings… Ctrl+,", "Check for Updates…", "-",
                          "Show/Hide Caption Window Ctrl+L", "-", "Quit Velun Ctrl+Q"}));
    QCOMPARE(fixture.menu->menus()[1]->title(), QString("File"));
    QCOMPARE(fixture.items(1), QStringList({"New Session Ctrl+N", "Save Current Session Ctrl+S",
                                            "Export… Ctrl+Shift+S", "Open Session File… Ctrl+O",
                                            "Saved Sessions… Ctrl+Shift+H"}));
    QCOMPARE(fixture.menu->menus()[2]->title(), QString("Edit"));
    QCOMPARE(fixture.items(2), QStringList({"Copy Ctrl+C", "Select All Ctrl+A"}));
  }

  void rebuildingFollowsTheLanguage() {
    Fixture fixture;
    Localization::shared().setLanguage(AppLanguage::korean);
    fixture.saveTitle = "현재 세션 저장";
    fixture.menu->rebuild();
    QCOMPARE(fixture.items(0),
             QStringList({"Velun 정보", "설정… Ctrl+,", "업데이트 확인…", "-",
                          "자막 창 보기/숨기기 Ctrl+L", "-", "Velun 종료 Ctrl+Q"}));
    QCOMPARE(fixture.menu->menus()[1]->title(), QString("파일"));
    QCOMPARE(fixture.items(1),
             QStringList({"새 세션 Ctrl+N", "현재 세션 저장 Ctrl+S", "내보내기… Ctrl+Shift+S",
                          "기록 파일 열기… Ctrl+O", "저장 기록… Ctrl+Shift+H"}));
    QCOMPARE(fixture.menu->menus()[2]->title(), QString("편집"));
    QCOMPARE(fixture.items(2), QStringList({"복사 Ctrl+C", "전체 선택 Ctrl+A"}));
  }

  void keysWorkInEveryWindowAlsoAfterRebuilding() {
    Fixture fixture;
    QWidget first;
    QWidget second;
    for (QWidget* window : {&first, &second}) {
      fixture.menu->install(window, MainMenu::Place::globalOnly);
      window->show();
    }
    for (int round = 1; round <= 2; ++round) {
      for (QWidget* window : {&first, &second}) {
        window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(window));
        QTest::keyClick(window, Qt::Key_N, Qt::ControlModifier);
      }
      QCOMPARE(fixture.performed.size(), std::size_t(2 * round));
      fixture.menu->rebuild();
    }
    QCOMPARE(fixture.performed.back(), AppCommand::newSession);
  }

  void aCommandThatDoesNotApplyIsNotPerformed() {
    Fixture fixture;
    QWidget window;
    fixture.menu->install(&window, MainMenu::Place::globalOnly);
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    // Disabled after the menu was last validated.
    fixture.disabled = AppCommand::exportCurrentSession;
    QTest::keyClick(&window, Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
    QVERIFY(fixture.performed.empty());
    fixture.menu->validate();
    QVERIFY(!fixture.action("Export…")->isEnabled());
  }

  void validationGivesTheSaveItemItsTitle() {
    Fixture fixture;
    fixture.saveTitle = "Save Session File…";
    fixture.menu->validate();
    QVERIFY(fixture.action("Save Session File…"));
  }

  void aWindowWithRoomShowsTheBar() {
    Fixture fixture;
    QWidget window;
    auto* layout = new QVBoxLayout(&window);
    fixture.menu->install(&window, MainMenu::Place::insideToo);
    const auto* bar = qobject_cast<QMenuBar*>(layout->menuBar());
    QVERIFY(bar);
    QCOMPARE(bar->actions().size(), 3);
  }

  void f10OpensTheMenuWhereThereIsNoBar() {
    Fixture fixture;
    QWidget window;
    fixture.menu->install(&window, MainMenu::Place::globalOnly);
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QTest::ignoreMessage(QtWarningMsg, "This plugin does not support raise()");
    QTest::ignoreMessage(QtWarningMsg, "This plugin does not support grabbing the keyboard");
    QTest::keyClick(&window, Qt::Key_F10);
    QTRY_VERIFY(QApplication::activePopupWidget());
    QApplication::activePopupWidget()->close();
  }

  void editingReachesWhatHasTheKeyboard() {
    Fixture fixture;
    QWidget window;
    QLineEdit field("some text", &window);
    fixture.menu->install(&window, MainMenu::Place::globalOnly);
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    field.setFocus();
    field.deselect();
    fixture.action("Select All")->trigger();
    QCOMPARE(field.selectedText(), QString("some text"));
    window.setFocus();
    fixture.action("Copy")->trigger();  // nothing there knows how to
  }
};

QTEST_MAIN(MainMenuTest)
#include "main_menu_test.moc"
