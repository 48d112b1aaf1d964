// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/menubar/menu_bar_controller.h"

#include "captions/model_fixture.h"
#include "support/scripted_tray_host.h"
#include "support/suite.h"

#include <QAction>
#include <QSignalSpy>

using namespace velun;
using test::ModelFixture;

namespace {

struct Fixture : ModelFixture {
  Fixture() {
    QObject::connect(&commands, &AppCommands::triggered, &commands,
                     [this](AppCommand command) { performed.push_back(command); });
  }

  QAction* action(const QString& title) const {
    for (QAction* candidate : menuBar->menu().actions()) {
      if (candidate->text() == title) return candidate;
    }
    return nullptr;
  }

  test::ScriptedTrayHost host;
  WindowState windows;
  AppCommands commands{*model, [this] {
                         return windows;
                       }};
  std::unique_ptr<MenuBarController> menuBar =
      std::make_unique<MenuBarController>(*model, host, commands);
  std::vector<AppCommand> performed;
};

/// The offscreen platform says that it cannot do what a pop-up asks for.
void expectPopUp() {
  QTest::ignoreMessage(QtWarningMsg, "This plugin does not support raise()");
  QTest::ignoreMessage(QtWarningMsg, "This plugin does not support grabbing the keyboard");
}

}  // namespace

class MenuBarControllerTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void plainClickShowsAHiddenPanelWhileCaptionsRun() {
    Fixture fixture;
    fixture.start();
    fixture.menuBar->statusItemClicked(true);
    QCOMPARE(fixture.performed, std::vector({AppCommand::showPanel}));
    QVERIFY(!fixture.menuBar->menu().isVisible());
  }

  void everyOtherClickOpensTheMenu_data() {
    QTest::addColumn<bool>("isPlain");
    QTest::addColumn<bool>("isRunning");
    QTest::addColumn<bool>("isPanelVisible");
    QTest::newRow("stopped") << true << false << false;
    QTest::newRow("panel in view") << true << true << true;
    QTest::newRow("right or control") << false << true << false;
  }
  void everyOtherClickOpensTheMenu() {
    QFETCH(bool, isPlain);
    QFETCH(bool, isRunning);
    Fixture fixture;
    if (isRunning) fixture.start();
    fixture.windows.isPanelVisible = QTest::currentDataTag() == QByteArray("panel in view");
    expectPopUp();
    fixture.menuBar->statusItemClicked(isPlain);
    QVERIFY(fixture.menuBar->menu().isVisible());
    QVERIFY(fixture.performed.empty());
    fixture.menuBar->menu().close();
  }

  void menuIsUpdatedWhenItOpens() {
    Fixture fixture;
    QVERIFY(fixture.action("Show Caption Window"));
    fixture.windows.isPanelVisible = true;
    expectPopUp();
    fixture.menuBar->statusItemClicked(false);
    QVERIFY(fixture.action("Hide Caption Window"));
    fixture.menuBar->menu().close();
  }

  void closedMenuFollowsTheModel() {
    Fixture fixture;
    fixture.start();
    QVERIFY(fixture.action("Stop Captions"));
    fixture.final("A line.");
    QVERIFY(fixture.action("Save Current Session")->isEnabled());
    fixture.settings.setUseMic(true);
    QVERIFY(fixture.action("Microphone")->isChecked());
    fixture.settings.setLanguage(AppLanguage::korean);
    QVERIFY(fixture.action("마이크"));
    fixture.settings.setLanguage(AppLanguage::english);
    test::settle();
  }

  void openMenuDoesNotChange() {
    Fixture fixture;
    expectPopUp();
    fixture.menuBar->statusItemClicked(false);
    QAction* start = fixture.action("Start Captions");
    fixture.start();
    QCOMPARE(fixture.action("Start Captions"), start);
    fixture.menuBar->menu().close();
  }

  void chosenItemTriggersItsCommand() {
    Fixture fixture;
    fixture.action("New Session")->trigger();
    fixture.action("Microphone")->trigger();
    QCOMPARE(fixture.performed,
             std::vector({AppCommand::newSession, AppCommand::selectMicrophone}));
  }

  void iconAppearsWhenAHostIsFound() {
    Fixture fixture;
    const QSignalSpy shown(fixture.menuBar.get(), &MenuBarController::statusItemShown);
    fixture.host.stayAway();
    QCOMPARE(shown.count(), 0);
    // Qt looks for a tray window, which the offscreen platform does not have.
    QTest::ignoreMessage(QtWarningMsg,
                         "QObject::connect: No such signal "
                         "QPlatformNativeInterface::systemTrayWindowChanged(QScreen*)");
    fixture.host.come(TrayHost::Protocol::embedded);
    QCOMPARE(shown.count(), 1);
  }
};

QTEST_MAIN(MenuBarControllerTest)
#include "menu_bar_controller_test.moc"
