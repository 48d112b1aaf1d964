// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/menubar/main_menu.h"

#include "captions/model_fixture.h"
#include "language/localization.h"
#include "support/suite.h"

#include <QApplication>
#include <QLineEdit>
#include <QMenuBar>
#include <QPointer>
#include <QVBoxLayout>

using namespace velun;

namespace {

struct Fixture : test::ModelFixture {
  Fixture() {
    QObject::connect(&commands, &AppCommands::triggered, &commands,
                     [this](AppCommand command) { performed.push_back(command); });
  }

  /// "title shortcut" of each item.
  QStringList items(int index) {
    QStringList items;
    for (const QAction* action : menu.menus()[std::size_t(index)]->actions()) {
      items.append(action->isSeparator()
                       ? QString("-")
                       : (action->text() + " " + action->shortcut().toString()).trimmed());
    }
    return items;
  }

  QAction* action(const QString& title) {
    for (const QMenu* one : menu.menus()) {
      for (QAction* candidate : one->actions()) {
        if (candidate->text() == title) return candidate;
      }
    }
    return nullptr;
  }

  WindowState windows;
  AppCommands commands{*model, [this] {
                         return windows;
                       }};
  MainMenu menu{commands};
  std::vector<AppCommand> performed;
};

bool showActive(QWidget& window) {
  window.show();
  window.activateWindow();
  return QTest::qWaitForWindowActive(&window);
}

/// The menu that F10 opens over the active window; null when none opens.
QWidget* openWithF10(QWidget& window) {
  QTest::ignoreMessage(QtWarningMsg, "This plugin does not support raise()");
  QTest::ignoreMessage(QtWarningMsg, "This plugin does not support grabbing the keyboard");
  QTest::keyClick(&window, Qt::Key_F10);
  if (!QTest::qWaitFor([] { return QApplication::activePopupWidget() != nullptr; })) return nullptr;
  return QApplication::activePopupWidget();
}

}  // namespace

class MainMenuTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void menusHaveTheirItemsAndShortcuts() {
    Fixture fixture;
    QCOMPARE(fixture.menu.menus()[0]->title(), QString("Velun"));
    QCOMPARE(fixture.items(0),
             QStringList({"About Velun", "Settings… Ctrl+,", "Check for Updates…", "-",
                          "Show/Hide Caption Window Ctrl+L", "Move Caption Window Ctrl+M",
                          "Move to Next Screen Ctrl+Shift+M", "Click Through Captions Ctrl+Shift+L",
                          "-", "Quit Velun Ctrl+Q"}));
    QCOMPARE(fixture.menu.menus()[1]->title(), QString("File"));
    QCOMPARE(fixture.items(1),
             QStringList({"New Session Ctrl+N", "Save Current Session Ctrl+S",
                          "Export… Ctrl+Shift+S", "Rename Session…", "Open Session File… Ctrl+O",
                          "Caption a Recording…", "Saved Sessions… Ctrl+Shift+H"}));
    QCOMPARE(fixture.menu.menus()[2]->title(), QString("Edit"));
    QCOMPARE(fixture.items(2), QStringList({"Copy Ctrl+C", "Select All Ctrl+A"}));
    QCOMPARE(fixture.menu.menus()[3]->title(), QString("View"));
    QCOMPARE(fixture.items(3), QStringList({"Bigger Text Ctrl++", "Smaller Text Ctrl+-",
                                            "Default Text Size Ctrl+0"}));
  }

  void followsTheInterfaceLanguage() {
    Fixture fixture;
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(fixture.items(0),
             QStringList({"Velun 정보", "설정… Ctrl+,", "업데이트 확인…", "-",
                          "자막 창 보기/숨기기 Ctrl+L", "자막 창 옮기기 Ctrl+M",
                          "다음 화면으로 옮기기 Ctrl+Shift+M", "자막 창 클릭 통과 Ctrl+Shift+L",
                          "-", "Velun 종료 Ctrl+Q"}));
    QCOMPARE(fixture.menu.menus()[1]->title(), QString("파일"));
    QCOMPARE(fixture.items(1),
             QStringList({"새 세션 Ctrl+N", "현재 세션 저장 Ctrl+S", "내보내기… Ctrl+Shift+S",
                          "세션 이름 변경…", "기록 파일 열기… Ctrl+O", "녹음 파일 자막 만들기…",
                          "저장 기록… Ctrl+Shift+H"}));
    QCOMPARE(fixture.menu.menus()[2]->title(), QString("편집"));
    QCOMPARE(fixture.items(2), QStringList({"복사 Ctrl+C", "전체 선택 Ctrl+A"}));
    QCOMPARE(fixture.menu.menus()[3]->title(), QString("보기"));
    QCOMPARE(fixture.items(3),
             QStringList({"글자 크게 Ctrl++", "글자 작게 Ctrl+-", "기본 글자 크기 Ctrl+0"}));
  }

  void shortcutsWorkInEveryWindowInBothLanguages() {
    Fixture fixture;
    QWidget first;
    QWidget second;
    for (QWidget* window : {&first, &second}) {
      fixture.menu.install(window, MainMenu::Place::globalOnly);
      window->show();
    }
    for (const AppLanguage language : {AppLanguage::english, AppLanguage::korean}) {
      Localization::shared().setLanguage(language);
      fixture.performed.clear();
      for (QWidget* window : {&first, &second}) {
        QVERIFY(showActive(*window));
        QTest::keyClick(window, Qt::Key_N, Qt::ControlModifier);
      }
      QCOMPARE(fixture.performed, std::vector({AppCommand::newSession, AppCommand::newSession}));
    }
  }

  void shortcutsOfDisabledCommandsDoNothing() {
    Fixture fixture;
    QWidget window;
    fixture.menu.install(&window, MainMenu::Place::globalOnly);
    QVERIFY(showActive(window));
    const auto press = [&window] {
      QTest::keyClick(&window, Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
    };
    QVERIFY(!fixture.action("Export…")->isEnabled());
    press();
    QVERIFY(fixture.performed.empty());
    fixture.final("A line.");
    press();
    QCOMPARE(fixture.performed, std::vector({AppCommand::exportCurrentSession}));
  }

  void openingAMenuRefreshesTheCommands() {
    Fixture fixture;
    fixture.windows = {.isHistoryActive = true, .hasSelection = true};
    Q_EMIT fixture.menu.menus()[1]->aboutToShow();
    QVERIFY(fixture.action("Save Session File…"));
    QVERIFY(fixture.action("Export…")->isEnabled());
  }

  void windowWithALayoutShowsAMenuBar() {
    Fixture fixture;
    QWidget window;
    auto* layout = new QVBoxLayout(&window);
    fixture.menu.install(&window, MainMenu::Place::insideToo);
    const auto* bar = qobject_cast<QMenuBar*>(layout->menuBar());
    QVERIFY(bar);
    QCOMPARE(bar->actions().size(), 4);
  }

  void f10OpensTheMenuWithoutAMenuBar() {
    Fixture fixture;
    QWidget window;
    fixture.menu.install(&window, MainMenu::Place::globalOnly);
    QVERIFY(showActive(window));
    QWidget* open = openWithF10(window);
    QVERIFY(open);
    open->close();
  }

  void f10OpensMenusInTheLookOfTheWindow() {
    Fixture fixture;
    QWidget window;
    int made = 0;
    fixture.menu.install(&window, MainMenu::Place::globalOnly, [&made] {
      auto menu = std::make_unique<QMenu>();
      menu->setObjectName(QString::number(++made));
      return menu;
    });
    QVERIFY(showActive(window));
    const QPointer<QWidget> open = openWithF10(window);
    QVERIFY(open);
    QCOMPARE(open->objectName(), QString("1"));
    QStringList titles;
    for (const QAction* action : open->actions()) {
      titles << action->text();
      QVERIFY(!action->menu()->objectName().isEmpty());
      QVERIFY(!action->menu()->actions().isEmpty());
    }
    QCOMPARE(titles, QStringList({"Velun", "File", "Edit", "View"}));
    open->close();
    QTRY_VERIFY(!open);
  }

  void editingCommandsReachTheFocusedWidget() {
    Fixture fixture;
    QWidget window;
    QLineEdit field("some text", &window);
    fixture.menu.install(&window, MainMenu::Place::globalOnly);
    QVERIFY(showActive(window));
    field.setFocus();
    field.deselect();
    fixture.action("Select All")->trigger();
    QCOMPARE(field.selectedText(), QString("some text"));
    window.setFocus();
    fixture.action("Copy")->trigger();  // a plain widget has no such slot
  }
};

QTEST_MAIN(MainMenuTest)
#include "main_menu_test.moc"
