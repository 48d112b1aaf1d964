// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/app_stage.h"
#include "app/session_library.h"
#include "support/saved_sessions.h"
#include "support/suite.h"

#include <QApplication>
#include <QPushButton>

using namespace velun;
using namespace velun::test;

namespace {

enum Answer { goOn, quit };
enum RemovalAnswer { keep, discard };

struct RecordingStage : AppStage {
  explicit RecordingStage(int recordings = 1) {
    QList<QUrl> files;
    for (int i = 1; i <= recordings; ++i) {
      const QString path = folder.filePath(QStringLiteral("%1.wav").arg(i));
      QFile file(path);
      QVERIFY(file.open(QIODevice::WriteOnly) && file.write("RIFF0000WAVEfmt ") > 0);
      files.append(QUrl::fromLocalFile(path));
    }
    coordinator().sessions().open(files);
    settle();
    QVERIFY(recording);
    recording->say("One line.");
  }

  QTemporaryDir folder;
};

}  // namespace

class RecordingsAndQuitTest final : public Suite {
  Q_OBJECT

 private Q_SLOTS:
  void quittingAsksFirst() {
    RecordingStage stage(2);
    stage.question.answers = {goOn};
    stage.requestQuit();
    QCOMPARE(stage.replies, std::vector({false}));
    QCOMPARE(stage.question.asked.size(), std::size_t(1));
    QVERIFY(stage.question.asked[0].informativeText.startsWith("2 recordings aren’t finished."));
    QVERIFY(stage.recording);
    QVERIFY(stage.files().isEmpty());
  }

  void captionsGoOnWhenTheUserStays() {
    RecordingStage stage;
    stage.startWithLine();
    stage.question.answers = {goOn};
    stage.requestQuit();
    // There is nothing to decide about the unsaved line.
    QCOMPARE(stage.question.asked.size(), std::size_t(1));
    QVERIFY(stage.model->isRunning());
  }

  void theUnsavedLinesAreAskedAboutNext() {
    RecordingStage stage;
    stage.startWithLine();
    stage.question.answers = {quit, cancelDiscarding};
    stage.requestQuit();
    QCOMPARE(stage.replies, std::vector({false}));
    QCOMPARE(stage.question.asked.size(), std::size_t(2));
  }

  void whatIsCaptionedSoFarIsSavedAtTheEnd() {
    RecordingStage stage;
    stage.question.answers = {quit};
    stage.requestQuit();
    QCOMPARE(stage.replies, std::vector({true}));
    stage.delegate->applicationWillTerminate();
    const auto saved = test::savedSessions(stage.store);
    QCOMPARE(saved.size(), std::size_t(1));
    QCOMPARE(saved[0].session.lines.at(0).text, "One line.");
  }

  void finishedRecordingsNeedNoQuestion() {
    RecordingStage stage;
    Q_EMIT stage.recording->ended({});
    settle();
    stage.requestQuit();
    QCOMPARE(stage.replies, std::vector({true}));
    QVERIFY(stage.question.asked.empty());
  }

  void aLogOutAsksToo() {
    RecordingStage stage;
    stage.question.answers = {goOn};
    QVERIFY(!stage.delegate->logOut().agree());
    stage.question.answers = {quit};
    QVERIFY(stage.delegate->logOut().agree());
    // Another program may still cancel the log-out.
    QVERIFY(stage.recording);
  }

  void anImposedLogOutSavesWithoutAQuestion() {
    RecordingStage stage;
    stage.delegate->logOut().prepareUnasked();
    QVERIFY(stage.question.asked.empty());
    QCOMPARE(test::savedSessions(stage.store).size(), std::size_t(1));
    QVERIFY(stage.recording);
  }

  void cancellingARecordingAsksBeforeCaptionsAreLost() {
    RecordingStage stage;
    const auto cancel = [] {
      for (QWidget* window : QApplication::topLevelWidgets()) {
        for (QPushButton* button : window->findChildren<QPushButton*>()) {
          if (button->isVisible() && button->text() == "Cancel") button->click();
        }
      }
      settle();
    };
    stage.question.answers = {keep};
    cancel();
    QCOMPARE(stage.question.asked.size(), std::size_t(1));
    QCOMPARE(stage.question.asked[0].message, QString("Discard the captions of “1.wav”?"));
    QVERIFY(stage.recording);
    stage.question.answers = {discard};
    cancel();
    QVERIFY(!stage.recording);
  }

  void captionsThatCouldNotBeSavedAreAskedAbout() {
    RecordingStage stage;
    QFile obstacle(stage.store.directory.toLocalFile());
    QVERIFY(QDir().mkpath(QFileInfo(obstacle).path()) && obstacle.open(QIODevice::WriteOnly));
    Q_EMIT stage.recording->ended({});
    settle();
    stage.question.answers = {goOn};
    stage.requestQuit();
    QCOMPARE(stage.replies, std::vector({false}));
    QVERIFY(stage.question.asked.at(0).informativeText.startsWith(
        "The captions of 1 recording couldn’t be saved."));
  }
};

QTEST_MAIN(RecordingsAndQuitTest)
#include "recordings_and_quit_test.moc"
