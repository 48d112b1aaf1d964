// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/app_stage.h"
#include "app/session_windows.h"
#include "support/suite.h"

using namespace velun;
using namespace velun::test;

/// Saved sessions that are printed into PDF files.
class PrintingTest final : public Suite {
  Q_OBJECT

  static void print(AppStage& stage, const QString& path) {
    stage.startWithLine();
    stage.perform(AppCommand::toggleCaptions);
    stage.perform(AppCommand::newSession);
    stage.printer = std::make_shared<QPrinter>();
    stage.printer->setOutputFormat(QPrinter::PdfFormat);
    stage.printer->setOutputFileName(path);
    chooseInLibrary(stage, "Print…");
    QCOMPARE(stage.printedTitles.size(), 1);
  }

  static void saveByItself(AppSettings& settings) { settings.setAutoSaveSessions(true); }

 private Q_SLOTS:
  void theFileAppears() {
    AppStage stage(saveByItself);
    const QString path = stage.folder.filePath("talk.pdf");
    print(stage, path);
    QTRY_VERIFY(QFile::exists(path));
    QVERIFY(stage.question.asked.empty());
  }

  void aFailureIsTold() {
    AppStage stage(saveByItself);
    print(stage, stage.folder.filePath("removed/talk.pdf"));
    QTRY_COMPARE(stage.question.asked.size(), std::size_t(1));
    QVERIFY(stage.question.asked[0].informativeText.contains("talk.pdf"));
  }

  void withoutAPrinterNothingIsPrinted() {
    AppStage stage(saveByItself);
    stage.startWithLine();
    stage.perform(AppCommand::toggleCaptions);
    stage.perform(AppCommand::newSession);
    chooseInLibrary(stage, "Print…");
    QCOMPARE(stage.printedTitles.size(), 1);
    QVERIFY(stage.question.asked.empty());
  }
};

QTEST_MAIN(PrintingTest)
#include "printing_test.moc"
