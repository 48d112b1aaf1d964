// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/print_session.h"

#include "language/localization.h"
#include "model/caption_session.h"
#include "platform/foundation/file_error.h"
#include "support/session_samples.h"
#include "support/suite.h"

#include <QPrinter>
#include <QProcess>
#include <QTemporaryDir>

using namespace velun;

namespace {

constexpr int kLines = 120;

/// A talk of several pages, with a line in the middle that is longer than one.
CaptionSession talk() {
  CaptionSession session;
  session.title = "Rivers & <seas> 강과 바다";
  session.startedAt = test::utc(2025, 3, 1, 9, 5, 7);
  for (int i = 0; i < kLines; ++i) {
    Line line;
    line.text = QStringLiteral("Line %1 of the talk.").arg(i);
    if (i == kLines / 2) line.text = QStringLiteral("A long sentence has no end. ").repeated(150);
    line.time = session.startedAt + std::chrono::seconds(5 * i);
    line.sourceLanguage = "en_US";
    line.translations["ko"] = QStringLiteral("강연의 %1번째 줄.").arg(i);
    session.lines.push_back(line);
  }
  return session;
}

}  // namespace

/// Sessions on paper, printed into PDF files as the print dialog does, and read back.
class PrintSessionTest final : public test::Suite {
  Q_OBJECT

  /// The texts of the pages, without ligatures.
  static QStringList printed(const CaptionSession& session, ExportOptions options = {}) {
    options.format = SessionFormat::html;
    const QTemporaryDir folder;
    const QString path = folder.filePath("talk.pdf");
    QPrinter printer;
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(path);
    print(QString::fromUtf8(session.exportAs(options)), printer);
    QProcess reader;
    reader.start("pdftotext", {"-layout", path, "-"});
    if (!reader.waitForFinished() || reader.exitCode() != 0) return {};
    QStringList pages = QString::fromUtf8(reader.readAllStandardOutput())
                            .normalized(QString::NormalizationForm_KC)
                            .split(u'\f');
    // Each page ends with a form feed.
    pages.removeLast();
    return pages;
  }

 private Q_SLOTS:
  void init() {
    Suite::init();
    Localization::shared().setLanguage(AppLanguage::english);
  }

  void everyLineIsPrintedOnce() {
    const QStringList pages = printed(talk());
    QVERIFY(pages.size() > 3);
    const QString text = pages.join(u' ');
    for (int i = 0; i < kLines; ++i) {
      if (i != kLines / 2) QCOMPARE(text.count(QStringLiteral("Line %1 of").arg(i)), 1);
      QCOMPARE(text.count(QStringLiteral("의 %1번째 줄").arg(i)), 1);
    }
    QCOMPARE(text.count("sentence"), 150);
  }

  void eachPageHasTheHeadingsAndItsNumber() {
    const QStringList pages = printed(talk());
    QVERIFY(pages.size() > 3);
    for (int i = 0; i < pages.size(); ++i) {
      QVERIFY2(pages[i].contains("English (United States)") && pages[i].contains("Korean"),
               qPrintable(pages[i]));
      QCOMPARE(pages[i].trimmed().section(QRegularExpression("\\s+"), -1), QString::number(i + 1));
    }
    QVERIFY(pages[0].contains("Rivers & <seas> 강과 바다"));
    QVERIFY(pages[0].contains("Started: March 1, 2025"));
    QVERIFY(!pages[1].contains("Rivers"));
  }

  void theChosenTextsArePrinted() {
    const QString text =
        printed(talk(), {.content = TranscriptContent::original, .lines = LineRange{3, 2}})
            .join(u' ');
    QVERIFY(text.contains("Line 3 of the talk.") && text.contains("Line 4 of the talk."));
    QVERIFY(!text.contains("Line 2") && !text.contains("Line 5") && !text.contains("번째 줄"));
  }

  void headingsAreInTheInterfaceLanguage() {
    Localization::shared().setLanguage(AppLanguage::korean);
    const QString page = printed(talk()).value(0);
    for (const char* text : {"시작:", "시각", "영어", "한국어"})
      QVERIFY2(page.contains(text), text);
  }

  void anEmptySessionIsAPageWithItsTitle() {
    CaptionSession session = talk();
    session.lines.clear();
    const QStringList pages = printed(session);
    QCOMPARE(pages.size(), 1);
    QVERIFY(pages[0].contains("Rivers"));
  }

  void aFileThatCannotBeWrittenIsTold() {
    const QTemporaryDir folder;
    QPrinter printer;
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(folder.filePath("removed/talk.pdf"));
    QVERIFY_EXCEPTION_THROWN(print("<p>One.</p>", printer), FileError);
  }

  void filesHaveNamesThatCanBeWritten_data() {
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("name");
    QTest::newRow("plain") << "Weekly Call"
                           << "Weekly Call.pdf";
    QTest::newRow("with a number") << "Version 1.2 of it"
                                   << "Version 1.2 of it.pdf";
    QTest::newRow("with slashes") << "Budget 2025/26"
                                  << "Budget 2025-26.pdf";
    QTest::newRow("of several lines") << "One\nTwo"
                                      << "One Two.pdf";
    QTest::newRow("hidden") << "..or not"
                            << "or not.pdf";
    QTest::newRow("empty") << " "
                           << "Session.pdf";
    QTest::newRow("long") << QString(300, u'a') << QString(60, u'a') + ".pdf";
  }
  void filesHaveNamesThatCanBeWritten() {
    QFETCH(QString, title);
    QTEST(pdfFileName(title), "name");
  }
};

QTEST_MAIN(PrintSessionTest)
#include "print_session_test.moc"
