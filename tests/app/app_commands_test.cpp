// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/app_stage.h"
#include "app/session_library.h"
#include "language/localization.h"
#include "support/suite.h"
#include "ui/caption/caption_panel.h"
#include "ui/library/settings_window_controller.h"
#include "ui/menubar/menu_bar_controller.h"

#include <QApplication>
#include <QDialog>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>

using namespace velun;
using namespace velun::test;

namespace {

/// A saved session in the stage's folder.
QUrl writeSession(AppStage& stage, const QString& text) {
  CaptionSession session;
  Line line;
  line.text = text;
  session.lines.push_back(line);
  return stage.store.save(session);
}

/// The window of saved sessions after the listing, with its first session selected.
HistoryViewModel& openHistory(AppStage& stage) {
  HistoryViewModel& library = stage.coordinator().sessions().library();
  stage.perform(AppCommand::showHistory);
  [&] {
    QTRY_VERIFY(!library.isReloading() && !library.sessions().empty());
  }();
  library.select(library.sessions().front()->url);
  [&] {
    QTRY_VERIFY(stage.coordinator().sessions().isKeyWindow());
  }();
  return library;
}

/// The visible window with this title; null if there is none.
QWidget* visibleWindow(const QString& title) {
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (window->isVisible() && window->windowTitle() == title) return window;
  }
  return nullptr;
}

}  // namespace

class AppCommandsTest final : public Suite {
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

  void savingNeedsALine() {
    AppStage stage;
    QVERIFY(!stage.action(AppCommand::saveSession).isEnabled());
    QVERIFY(!stage.action(AppCommand::saveDocument).isEnabled());
    QVERIFY(!stage.action(AppCommand::exportCurrentSession).isEnabled());
    stage.startWithLine();
    QVERIFY(stage.action(AppCommand::saveSession).isEnabled());
    QVERIFY(stage.action(AppCommand::saveDocument).isEnabled());
    QCOMPARE(stage.action(AppCommand::saveDocument).text(), QString("Save Current Session"));
    QVERIFY(stage.action(AppCommand::exportCurrentSession).isEnabled());
    stage.perform(AppCommand::saveDocument);
    QCOMPARE(stage.files().size(), 1);
  }

  void savedSessionCanBeSavedAgain() {
    AppStage stage;
    stage.startWithLine();
    stage.perform(AppCommand::saveSession);
    // Unlike the status menu's item, which has nothing left to offer.
    QVERIFY(stage.action(AppCommand::saveSession).isEnabled());
  }

  void showsAFailedSave() {
    AppStage stage;
    stage.startWithLine();
    stage.breakStore();
    stage.perform(AppCommand::saveSession);
    QCOMPARE(stage.question.asked.size(), std::size_t(1));
    QCOMPARE(stage.question.asked[0].message, QString("Couldn’t Complete the Action"));
    QCOMPARE(stage.question.asked[0].informativeText, *stage.model->saveError());
    QVERIFY(stage.model->isRunning());
  }

  void opensTheSessionsFolder() {
    AppStage stage;
    stage.perform(AppCommand::openSessionsFolder);
    QCOMPARE(stage.fileManager.opened, QList<QUrl>{stage.store.directory});
    stage.fileManager.failure = "No room.";
    stage.perform(AppCommand::openSessionsFolder);
    QCOMPARE(stage.question.asked.at(0).informativeText, QString("No room."));
  }

  void savesWhatTheActiveWindowShows() {
    AppStage stage;
    const QUrl saved = writeSession(stage, "Saved earlier.");
    HistoryViewModel& library = openHistory(stage);
    const QAction& save = stage.action(AppCommand::saveDocument);
    QCOMPARE(save.text(), QString("Save Session File…"));
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(stage.action(AppCommand::saveDocument).text(), QString("기록 파일 저장…"));
    Localization::shared().setLanguage(AppLanguage::english);
    QVERIFY(save.isEnabled());
    QVERIFY(stage.action(AppCommand::exportCurrentSession).isEnabled());

    stage.chosenFile = QUrl::fromLocalFile(stage.folder.filePath("copy.json"));
    stage.perform(AppCommand::saveDocument);
    QCOMPARE(stage.saveRequests.at(0).title, QString("Save Session File"));
    QVERIFY(stage.saveRequests.at(0).proposedName.startsWith("Velun-"));
    QVERIFY(stage.saveRequests.at(0).proposedName.endsWith(".json"));
    QCOMPARE(stage.store.read(*stage.chosenFile).lines.at(0).text, QString("Saved earlier."));

    library.select(std::nullopt);
    QCOMPARE(save.text(), QString("Save Session File…"));
    QVERIFY(!save.isEnabled());
  }

  void saysWhyACopyCouldNotBeSaved() {
    AppStage stage;
    writeSession(stage, "Saved earlier.");
    openHistory(stage);
    stage.chosenFile = QUrl::fromLocalFile(stage.folder.filePath("nowhere/copy.json"));
    stage.perform(AppCommand::saveDocument);
    QCOMPARE(stage.question.asked.size(), std::size_t(1));
    QCOMPARE(stage.question.asked[0].message, QString("Couldn’t Complete the Action"));
    QCOMPARE(stage.question.asked[0].informativeText,
             QString("“copy.json” couldn’t be written: No such file or directory."));
    QVERIFY(!QFileInfo::exists(stage.chosenFile->toLocalFile()));
  }

  void opensTheChosenFile() {
    AppStage stage;
    stage.chosenFile = writeSession(stage, "From elsewhere.");
    stage.perform(AppCommand::openSessionFile);
    QCOMPARE(stage.openRequests.at(0).title, QString("Open Velun Session"));
    QCOMPARE(stage.openRequests.at(0).message,
             QString("Choose a Velun session (.json) or a Markdown transcript from an earlier "
                     "version (.md)."));
    QTRY_COMPARE(stage.coordinator().sessions().library().selection(), stage.chosenFile);
    QTRY_VERIFY(visibleWindow("Velun — Saved Sessions"));
  }

  void showsWhyAFileCannotBeRead() {
    AppStage stage;
    stage.chosenFile = QUrl::fromLocalFile(stage.folder.filePath("missing.json"));
    stage.perform(AppCommand::openSessionFile);
    QTRY_COMPARE(stage.question.asked.size(), std::size_t(1));
    QCOMPARE(stage.question.asked.at(0).message, QString("Couldn’t Complete the Action"));
    QCOMPARE(stage.question.asked.at(0).informativeText, QString("“missing.json” doesn’t exist."));
    QVERIFY(!visibleWindow("Velun — Saved Sessions"));
  }

  void cancelledFilePanelOpensNothing() {
    AppStage stage;
    stage.perform(AppCommand::openSessionFile);
    QVERIFY(stage.question.asked.empty());
    QVERIFY(!stage.coordinator().sessions().isKeyWindow());
  }

  void deletingTheLiveSessionsFileEndsItsSaving() {
    AppStage stage;
    stage.startWithLine();
    stage.perform(AppCommand::saveSession);
    const QUrl file = *stage.model->savedURL();
    const HistoryViewModel& library = openHistory(stage);
    writeSession(stage, "Came meanwhile.");
    stage.coordinator().sessions().deleteHistorySelection({file});
    settle();
    QCOMPARE(stage.trashed, QList<QUrl>{file});
    QVERIFY(!stage.model->savedURL());
    QVERIFY(!stage.model->isSavingSession());
    stage.final("Another line.");
    QCOMPARE(stage.files().size(), 1);
    QTRY_COMPARE(library.sessions().size(), std::size_t(1));
    QCOMPARE(library.sessions()[0]->session.lines[0].text, QString("Came meanwhile."));
  }

  void showsAFailedDeletion() {
    AppStage stage;
    const QUrl file = writeSession(stage, "Stays.");
    openHistory(stage);
    stage.trashFailure = "The trash is full.";
    stage.coordinator().sessions().deleteHistorySelection({file});
    QCOMPARE(stage.question.asked.at(0).informativeText,
             QString("Couldn’t delete the session: The trash is full."));
    QCOMPARE(stage.files().size(), 1);
  }

  void missingFileLeavesTheListWhenDeletionFails() {
    AppStage stage;
    const QUrl file = writeSession(stage, "Gone.");
    const HistoryViewModel& library = openHistory(stage);
    QVERIFY(QFile::remove(file.toLocalFile()));
    stage.trashFailure = "It doesn’t exist.";
    stage.coordinator().sessions().deleteHistorySelection({file});
    QCOMPARE(stage.question.asked.at(0).informativeText,
             QString("Couldn’t delete the session: It doesn’t exist."));
    QTRY_VERIFY(library.sessions().empty());
  }

  void theSelectedSessionIsRevealed() {
    AppStage stage;
    const QUrl file = writeSession(stage, "Look.");
    stage.coordinator().sessions().revealHistoryFile();
    QVERIFY(stage.fileManager.revealed.isEmpty());
    openHistory(stage);
    stage.coordinator().sessions().revealHistoryFile();
    QCOMPARE(stage.fileManager.revealed.size(), 1);
    QCOMPARE(canonicalPath(stage.fileManager.revealed[0]), canonicalPath(file));
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

  void dialogsAreLocalized() {
    AppStage stage;
    stage.settings.setLanguage(AppLanguage::korean);
    const QUrl file = writeSession(stage, "하나.");
    QCOMPARE(stage.action(AppCommand::saveDocument).text(), QString("현재 세션 저장"));
    openHistory(stage);
    QCOMPARE(stage.action(AppCommand::saveDocument).text(), QString("기록 파일 저장…"));
    stage.perform(AppCommand::saveDocument);
    QCOMPARE(stage.saveRequests.at(0).title, QString("기록 파일 저장"));
    stage.perform(AppCommand::openSessionFile);
    QCOMPARE(stage.openRequests.at(0).title, QString("Velun 기록 열기"));
    QCOMPARE(stage.openRequests.at(0).message,
             QString("Velun 기록 (.json) 또는 이전 버전의 Markdown 기록 (.md)을 선택하세요."));
    stage.trashFailure = "휴지통이 가득 찼습니다.";
    stage.coordinator().sessions().deleteHistorySelection({file});
    QCOMPARE(stage.question.asked.at(0).message, QString("작업을 완료하지 못했습니다"));
    QCOMPARE(stage.question.asked.at(0).informativeText,
             QString("기록을 삭제하지 못했습니다: 휴지통이 가득 찼습니다."));
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

  void everyPublishedNameTriggersItsCommand() {
    AppStage stage;
    stage.startWithLine();  // enables all of them
    QSignalSpy triggered(&stage.coordinator().commands(), &AppCommands::triggered);
    QDialog blocker;  // so that nothing is carried out
    blocker.setModal(true);
    blocker.show();
    const std::vector<ApplicationAction> actions = stage.application.actions;
    QCOMPARE(actions.size(), std::size_t(19));
    for (const ApplicationAction& action : actions) {
      Q_EMIT stage.application.actionRequested(
          action.name, action.parameterType.isEmpty() ? QVariant() : action.state);
      QCOMPARE(triggered.count(), action.name == "running" ? 0 : 1);
      triggered.clear();
    }
    Q_EMIT stage.application.actionRequested("input", "television");
    QVERIFY(triggered.isEmpty());
  }
};

QTEST_MAIN(AppCommandsTest)
#include "app_commands_test.moc"
