// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/session_windows.h"
#include "language/localization.h"
#include "platform/foundation/file_access.h"
#include "support/saved_sessions.h"
#include "support/suite.h"

using namespace velun;
using namespace velun::test;

/// Commands on session files: save, open, reveal, delete.
class SessionCommandsTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void theCurrentSessionGetsATitleWhileCaptionsRun() {
    test::AppStage stage;
    stage.startWithLine();
    stage.perform(AppCommand::renameSession);
    QCOMPARE(stage.model->session().title, defaultSessionTitle());
    stage.chosenTitle = "Biology";
    stage.perform(AppCommand::renameSession);
    QCOMPARE(stage.model->session().title, "Biology");
    QCOMPARE(stage.askedTitles, QStringList({defaultSessionTitle(), defaultSessionTitle()}));
  }

  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

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
    QCOMPARE(test::readSession(*stage.chosenFile).lines.at(0).text, QString("Saved earlier."));

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
    QCOMPARE(library.sessions()[0]->summary.firstWords, QString("Came meanwhile."));
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
    chooseInLibrary(stage, "Show in File Manager");
    QCOMPARE(stage.fileManager.revealed.size(), 1);
    QCOMPARE(canonicalPath(stage.fileManager.revealed[0]), canonicalPath(file));
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
};

QTEST_MAIN(SessionCommandsTest)
#include "session_commands_test.moc"
