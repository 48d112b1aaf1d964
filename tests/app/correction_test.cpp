// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/app_stage.h"
#include "app/session_windows.h"
#include "support/saved_sessions.h"
#include "support/suite.h"

using namespace velun;
using namespace velun::test;

/// Corrections of lines of the session that captions are still added to, and of others.
class CorrectionTest final : public Suite {
  Q_OBJECT

  static CaptionSession saved(AppStage& stage) {
    return test::savedSessions(stage.store).at(0).session;
  }

 private Q_SLOTS:
  void theCurrentSessionIsCorrectedWhileItGoesOn() {
    AppStage stage([](AppSettings& settings) { settings.setAutoSaveSessions(true); });
    stage.startWithLine();
    stage.correction = " Won line. ";
    chooseInLibrary(stage, "Correct Line…");
    stage.settleSaving();
    QCOMPARE(stage.texts(), QStringList({"Won line."}));
    stage.final("Another line.");
    stage.settleSaving();
    QCOMPARE(saved(stage).lines.size(), std::size_t(2));
    QCOMPARE(saved(stage).lines[0].text, QString("Won line."));
    QCOMPARE(saved(stage).lines[0].original.value_or(QString()), QString("One line."));
    QTRY_COMPARE(stage.coordinator().sessions().library().sessions()[0]->summary.firstWords,
                 QString("Won line."));
    chooseInLibrary(stage, "Undo Correction");
    stage.settleSaving();
    QCOMPARE(stage.texts(), QStringList({"One line.", "Another line."}));
    QVERIFY(!saved(stage).lines[0].original);
  }

  void aSavedSessionIsCorrected() {
    AppStage stage([](AppSettings& settings) { settings.setAutoSaveSessions(true); });
    stage.startWithLine();
    stage.perform(AppCommand::toggleCaptions);
    stage.perform(AppCommand::newSession);
    stage.correction = "Won line.";
    chooseInLibrary(stage, "Correct Line…");
    QCOMPARE(saved(stage).lines[0].text, QString("Won line."));
    QVERIFY(stage.question.asked.empty());
  }

  void aCopyOfTheCurrentSessionIsCorrectedByItself() {
    AppStage stage([](AppSettings& settings) { settings.setAutoSaveSessions(true); });
    stage.startWithLine();
    stage.settleSaving();
    const QString copy = stage.folder.filePath("copy.json");
    QVERIFY(QFile::copy(test::savedSessions(stage.store).at(0).url.toLocalFile(), copy));
    stage.coordinator().open({QUrl::fromLocalFile(copy)});
    QTRY_COMPARE(stage.coordinator().sessions().library().selection(),
                 std::optional(QUrl::fromLocalFile(copy)));
    stage.correction = "Won line.";
    choose("Correct Line…");
    QCOMPARE(stage.texts(), QStringList({"One line."}));
    QCOMPARE(readSessionFile(copy, {}).lines[0].text, QString("Won line."));
  }

  void nothingIsWrittenWithoutAnotherText_data() {
    QTest::addColumn<std::optional<QString>>("correction");
    QTest::newRow("cancelled") << std::optional<QString>();
    QTest::newRow("empty") << std::optional<QString>(" ");
    QTest::newRow("the same") << std::optional<QString>("One line.");
  }
  void nothingIsWrittenWithoutAnotherText() {
    QFETCH(std::optional<QString>, correction);
    AppStage stage([](AppSettings& settings) { settings.setAutoSaveSessions(true); });
    stage.startWithLine();
    stage.correction = correction;
    chooseInLibrary(stage, "Correct Line…");
    QVERIFY(!saved(stage).lines[0].original);
    QCOMPARE(stage.correctedLines, QStringList({"One line."}));
  }

  void aFailureIsTold() {
    AppStage stage([](AppSettings& settings) { settings.setAutoSaveSessions(true); });
    stage.startWithLine();
    stage.perform(AppCommand::toggleCaptions);
    stage.perform(AppCommand::newSession);
    stage.correction = "Won line.";
    stage.perform(AppCommand::showHistory);
    QTRY_COMPARE(stage.coordinator().sessions().library().sessions().size(), std::size_t(1));
    stage.beforeCorrection = [&stage] {
      stage.breakStore();
    };
    chooseInLibrary(stage, "Correct Line…");
    QCOMPARE(stage.question.asked.size(), std::size_t(1));
  }
};

QTEST_MAIN(CorrectionTest)
#include "correction_test.moc"
