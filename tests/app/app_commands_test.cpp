// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/session_windows.h"
#include "language/localization.h"
#include "support/suite.h"
#include "ui/caption/caption_panel.h"
#include "ui/menubar/menu_bar_controller.h"
#include "ui/settings/settings_window_controller.h"

#include <QApplication>
#include <QDialog>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>

using namespace velun;
using namespace velun::test;

namespace {

/// They change a setting, without a command.
const QStringList kSourceActions = {"device", "only-program", "except-program"};

}  // namespace

class AppCommandsTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void launchShowsNoWindowAndSearchesForATray() {
    AppStage stage;
    QVERIFY(!stage.isPanelShown());
    QVERIFY(!stage.model->isRunning());
    QCOMPARE(stage.tray.searches, 1);
    QVERIFY(!QApplication::quitOnLastWindowClosed());
  }

  void languagesAreSortedInTheInterfaceLanguage() {
    AppStage stage;
    stage.locales = {"ko_KR", "de_DE", "en_US"};
    stage.launch();
    QCOMPARE(stage.model->locales(), QStringList({"en_US", "de_DE", "ko_KR"}));
    Localization::shared().setLanguage(AppLanguage::korean);
    settle();
    QCOMPARE(stage.model->locales(), QStringList({"de_DE", "en_US", "ko_KR"}));
  }

  void reopeningShowsThePanel() {
    AppStage stage;
    Q_EMIT stage.application.activated();
    QVERIFY(stage.isPanelShown());
  }

  void reopeningLetsThePanelBeClickedAgain() {
    AppStage stage;
    stage.desktop.setCapabilities({.passesClicks = true});
    stage.perform(AppCommand::showPanel);
    stage.perform(AppCommand::toggleClickThrough);
    QVERIFY(stage.settings.clickThrough());
    QVERIFY(stage.desktop.passesClicks);
    Q_EMIT stage.application.activated();
    QVERIFY(!stage.settings.clickThrough());
    QVERIFY(!stage.desktop.passesClicks);
  }

  void filesWaitForTheAnswerToAQuestion() {
    AppStage stage;
    const QUrl file = writeSession(stage, "One line.");
    const HistoryViewModel& library = stage.coordinator().sessions().library();
    QDialog question;
    question.setModal(true);
    question.show();
    stage.coordinator().open({file});
    settle();
    QVERIFY(!library.isOpening() && !library.selection());
    question.reject();
    QTRY_COMPARE(library.selection(), std::optional(file));
  }

  void clickThroughNeedsADesktopThatKnowsIt() {
    AppStage stage;
    stage.perform(AppCommand::toggleClickThrough);
    QVERIFY(!stage.settings.clickThrough());
  }

  void missingTrayShowsThePanelAndExplainsOnce() {
    AppStage stage;
    stage.tray.stayAway();
    QVERIFY(stage.isPanelShown());
    QCOMPARE(stage.preferences.get<bool>("statusItemExplained"), std::optional(true));
    QWidget* const notice = visibleWindow("Velun");
    QVERIFY(notice);
    QVERIFY(!notice->isModal());
    // Otherwise the panel would cover the alert.
    QVERIFY(notice->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    QCOMPARE(notice->accessibleName(), QString("No System Tray Found"));
    notice->findChild<QPushButton*>()->click();
    QTRY_VERIFY(!visibleWindow("Velun"));
  }

  void startingShowsThePanelFirst() {
    AppStage stage;
    stage.perform(AppCommand::toggleCaptions);
    QVERIFY(stage.isPanelShown());
    QVERIFY(stage.model->isRunning());
    stage.perform(AppCommand::toggleCaptions);
    QVERIFY(!stage.model->isRunning());
  }

  void engineCommandsAreDisabledDuringATransition() {
    AppStage stage;
    stage.engine->holdsStarts = true;
    stage.perform(AppCommand::toggleCaptions);
    QVERIFY(stage.model->isTransitioning());
    for (const AppCommand command : {AppCommand::toggleCaptions, AppCommand::newSession,
                                     AppCommand::selectMicrophone, AppCommand::selectComputer}) {
      QVERIFY(!stage.action(command).isEnabled());
      stage.perform(command);
    }
    QVERIFY(stage.model->isRunning());
    QVERIFY(!stage.settings.useMic());
    stage.engine->release();
    settle();
    QVERIFY(stage.action(AppCommand::toggleCaptions).isEnabled());
  }

  void engineCommandsWorkDuringADownload() {
    AppStage stage;
    stage.engine->holdsStarts = true;
    stage.engine->downloads = true;
    stage.perform(AppCommand::toggleCaptions);
    QCOMPARE(stage.action(AppCommand::toggleCaptions).text(), QString("Stop Captions"));
    QVERIFY(stage.application.action("toggle-captions").isEnabled);
    QVERIFY(stage.application.action("input").isEnabled);
    stage.perform(AppCommand::selectMicrophone);
    QCOMPARE(stage.engine->calls.last(), QString("start en_US microphone"));
    stage.perform(AppCommand::newSession);
    // The new session continues with captions, and so with the download.
    QVERIFY(stage.model->isRunning());
    QCOMPARE(stage.engine->calls.last(), QString("start en_US microphone"));
    Q_EMIT stage.application.actionRequested("toggle-captions", {});
    QVERIFY(!stage.application.action("toggle-captions").isEnabled);
    settle();
    QVERIFY(!stage.model->isRunning());
    QVERIFY(stage.application.action("toggle-captions").isEnabled);
    QCOMPARE(stage.engine->calls.filter("start en_US").size(), 3);
    QCOMPARE(stage.engine->overlaps, 0);
  }

  void quitCancelsADownload() {
    AppStage stage;
    stage.engine->holdsStarts = true;
    stage.engine->downloads = true;
    stage.perform(AppCommand::toggleCaptions);
    stage.requestQuit();
    QVERIFY(stage.engine->isStopRequested);
    QCOMPARE(stage.replies, std::vector<bool>{true});
  }

  void appliesContrastAndMotionPreferences() {
    AppStage stage;
    CaptionWindowController& window = stage.coordinator().captionWindow();
    window.show();
    const int height = window.panel().height();
    stage.desktop.setReducedMotion(true);
    window.setHeader(true, true);
    QCOMPARE(window.panel().height(), height + 44);
    const QColor usual = QApplication::palette().color(QPalette::Window);
    stage.desktop.setHighContrast(true);
    QCOMPARE(QApplication::palette().color(QPalette::Window), QColor(Qt::white));
    stage.desktop.setHighContrast(false);
    stage.desktop.setReducedMotion(false);
    QCOMPARE(QApplication::palette().color(QPalette::Window), usual);
    window.setHeader(false, true);
    QVERIFY(window.panel().height() > height);
  }

  void togglesThePanel() {
    AppStage stage;
    stage.perform(AppCommand::togglePanel);
    QVERIFY(stage.isPanelShown());
    stage.perform(AppCommand::togglePanel);
    QVERIFY(!stage.isPanelShown());
    stage.perform(AppCommand::restorePosition);
    QVERIFY(stage.isPanelShown());
  }

  void commandsChangeTheSettings() {
    AppStage stage;
    stage.perform(AppCommand::selectMicrophone);
    QVERIFY(stage.settings.useMic());
    stage.perform(AppCommand::selectComputer);
    QVERIFY(!stage.settings.useMic());
    stage.perform(AppCommand::toggleKeepOnTop);
    QVERIFY(!stage.settings.keepOnTop());
  }

  void theLanguageRenamesMenusAndWindows() {
    AppStage stage;
    writeSession(stage, "A line.");
    stage.perform(AppCommand::showSettings);
    openHistory(stage);
    stage.settings.setLanguage(AppLanguage::korean);
    settle();
    QCOMPARE(stage.coordinator().menuBar().mainMenu().menus()[1]->title(), QString("파일"));
    QCOMPARE(stage.coordinator().settingsWindow()->window().windowTitle(), QString("Velun 설정"));
    QVERIFY(visibleWindow("Velun — 저장 기록"));
  }

  void requestingAnOpenWindowKeepsIt_data() {
    QTest::addColumn<AppCommand>("command");
    QTest::addColumn<QString>("title");
    QTest::newRow("about") << AppCommand::showAbout << "About Velun";
    QTest::newRow("updates") << AppCommand::checkForUpdates << "Velun — Updates";
    QTest::newRow("settings") << AppCommand::showSettings << "Velun Settings";
    QTest::newRow("saved sessions") << AppCommand::showHistory << "Velun — Saved Sessions";
  }
  void requestingAnOpenWindowKeepsIt() {
    QFETCH(AppCommand, command);
    QFETCH(QString, title);
    AppStage stage;
    stage.perform(command);
    const QPointer<QWidget> window = visibleWindow(title);
    QVERIFY(window);
    // From the main menu, which is a part of the window.
    stage.perform(command);
    QVERIFY(window && window->isVisible());
    window->close();
    stage.perform(command);
    QCOMPARE(visibleWindow(title), window.data());
  }

  void languagesAndModelsAreAPageOfTheSettings() {
    AppStage stage;
    stage.perform(AppCommand::showModels);
    QVERIFY(visibleWindow("Velun Settings"));
  }

  void commandsAreIgnoredWhileAQuestionIsOpen() {
    AppStage stage;
    QDialog open;
    open.setModal(true);
    open.show();
    stage.perform(AppCommand::toggleCaptions);
    Q_EMIT stage.application.actionRequested("toggle-captions", {});
    Q_EMIT stage.application.activated();
    QVERIFY(!stage.model->isRunning());
    QVERIFY(!stage.isPanelShown());
    open.close();
    stage.perform(AppCommand::toggleCaptions);
    QVERIFY(stage.model->isRunning());
  }

  void publishesStateToOtherPrograms() {
    AppStage stage;
    const auto state = [&](const char* name) {
      return stage.application.action(name).state;
    };
    QCOMPARE(state("running"), false);
    QCOMPARE(state("input"), "computer");
    QVERIFY(!stage.application.action("save-session").isEnabled);
    Q_EMIT stage.application.actionRequested("input", "microphone");
    QCOMPARE(state("input"), "microphone");
    Q_EMIT stage.application.actionRequested("toggle-captions", {});
    settle();
    stage.final("A line.");
    QCOMPARE(state("running"), true);
    QCOMPARE(state("toggle-captions"), true);
    QCOMPARE(state("toggle-panel"), true);
    QVERIFY(stage.application.action("save-session").isEnabled);
  }

  void otherProgramsChooseWhatIsCaptioned() {
    AppStage stage;
    const auto ask = [&stage](const QString& name, const QString& value) {
      Q_EMIT stage.application.actionRequested(name, value);
      return stage.application.action(name).state.toString();
    };
    QCOMPARE(ask("device", "hdmi"), QString("hdmi"));
    QCOMPARE(stage.settings.output().id, QString("hdmi"));
    QCOMPARE(ask("only-program", "Firefox"), QString("Firefox"));
    QCOMPARE(ask("except-program", "Music"), QString("Music"));
    QCOMPARE(stage.application.action("only-program").state, QString());
    QCOMPARE(stage.settings.program(), (ProgramChoice{ProgramChoice::Scope::allBut, "Music"}));
    QCOMPARE(ask("only-program", {}), QString());
    QCOMPARE(stage.settings.program(), ProgramChoice());
    QCOMPARE(ask("device", {}), QString());
    for (const QString& name : kSourceActions) QVERIFY(stage.application.action(name).isEnabled);
  }

  void textSizeCommandsStayWithinNineAndNinetySixPoints() {
    AppStage stage;
    const auto ask = [&stage](const char* name) {
      Q_EMIT stage.application.actionRequested(name, {});
      return stage.settings.fontSize();
    };
    QCOMPARE(ask("bigger-text"), 18.0);
    QCOMPARE(ask("smaller-text"), 16.0);
    for (int i = 0; i < 30; ++i) ask("bigger-text");
    QCOMPARE(stage.settings.fontSize(), 96.0);
    for (int i = 0; i < 30; ++i) ask("smaller-text");
    QCOMPARE(stage.settings.fontSize(), 9.0);
    QCOMPARE(ask("default-text-size"), 16.0);
  }

  void everyPublishedNameTriggersItsCommand() {
    AppStage stage;
    stage.desktop.setCapabilities({.placesWindows = true, .passesClicks = true});
    stage.startWithLine();  // enables all of them
    QSignalSpy triggered(&stage.coordinator().commands(), &AppCommands::triggered);
    QDialog blocker;  // so that nothing is carried out
    blocker.setModal(true);
    blocker.show();
    const std::vector<ApplicationAction> actions = stage.application.actions;
    QCOMPARE(actions.size(), std::size_t(32));
    for (const ApplicationAction& action : actions) {
      if (kSourceActions.contains(action.name)) continue;
      Q_EMIT stage.application.actionRequested(
          action.name, action.parameterType.isEmpty() ? QVariant() : action.state);
      // There is only one screen.
      const bool acts = action.name != "running" && action.name != "move-panel-to-next-screen";
      QCOMPARE(action.isEnabled, acts);
      QCOMPARE(triggered.count(), acts ? 1 : 0);
      triggered.clear();
    }
    Q_EMIT stage.application.actionRequested("input", "television");
    QVERIFY(triggered.isEmpty());
  }
};

QTEST_MAIN(AppCommandsTest)
#include "app_commands_test.moc"
