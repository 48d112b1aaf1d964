// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/session_table.h"

#include "language/localization.h"
#include "support/session_samples.h"
#include "support/suite.h"

#include <QXmlStreamReader>

using namespace velun;

namespace {

CaptionSession sample() {
  CaptionSession session;
  session.title = "Rivers & <seas>";
  session.startedAt = test::utc(2025, 3, 1, 9, 5, 7);
  Line first;
  first.time = session.startedAt;
  first.text = "Rivers | find\nthe sea.";
  first.sourceLanguage = "en_US";
  first.translations = {{"ko", "강은 바다를 찾아간다."}, {"es", "Los ríos."}};
  Line second;
  second.text = "A \\ and a <b>.";
  second.sourceLanguage = "en_US";
  session.lines = {first, second};
  return session;
}

}  // namespace

class SessionTableTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    Suite::init();
    Localization::shared().setLanguage(AppLanguage::english);
  }

  void hasAColumnForEachText() {
    const SessionTable table = sessionTable(sample(), {});
    QCOMPARE(table.headings, QStringList({"Time", "English (United States)", "Spanish", "Korean"}));
    QCOMPARE(table.rows.size(), std::size_t(2));
    QCOMPARE(table.rows[0][3], QString("강은 바다를 찾아간다."));
    QCOMPARE(table.rows[1], QStringList({"", "A \\ and a <b>.", "", ""}));
  }

  void knownSpeakersHaveAColumn() {
    CaptionSession session = sample();
    session.lines[0].speaker = "2";
    const SessionTable table = sessionTable(session, {});
    QCOMPARE(table.headings[1], QString("Speaker (estimate)"));
    QCOMPARE(table.rows[0][1], QString("Speaker 2"));
    QCOMPARE(table.rows[1][1], QString());
    QCOMPARE(table.narrowColumns, 2);
  }

  void optionsChooseTheColumns() {
    QCOMPARE(sessionTable(sample(), {.language = "ko", .showsTimes = false}).headings,
             QStringList({"English (United States)", "Korean"}));
    QCOMPARE(sessionTable(sample(), {.content = TranscriptContent::original}).headings,
             QStringList({"Time", "English (United States)"}));
    QCOMPARE(sessionTable(sample(), {.content = TranscriptContent::translation}).headings,
             QStringList({"Time", "Spanish", "Korean"}));
  }

  void linesInSeveralLanguagesShareTheColumnOfOriginals() {
    CaptionSession session = sample();
    session.lines[1].sourceLanguage = "de_DE";
    session.lines[1].legacyTranslation = "ein altes";
    QCOMPARE(sessionTable(session, {}).headings,
             QStringList({"Time", "Original", "Spanish", "Korean", "Translation"}));
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(sessionTable(session, {}).headings,
             QStringList({"시각", "원문", "스페인어", "한국어", "번역"}));
  }

  void aSessionWithoutLinesHasNoRows() {
    CaptionSession session = sample();
    session.lines.clear();
    QVERIFY(sessionTable(session, {}).rows.empty());
    QVERIFY(renderMarkdownTable(session, {}).startsWith("# Rivers"));
  }

  void markdownEscapesWhatWouldEndACell() {
    const QString text = renderMarkdownTable(sample(), {.language = "es", .showsTimes = false});
    const QStringList lines = text.split(u'\n');
    QCOMPARE(lines[4], QString("| English (United States) | Spanish |"));
    QCOMPARE(lines[5], QString("| --- | --- |"));
    QCOMPARE(lines[6], QString("| Rivers \\| find<br>the sea. | Los ríos. |"));
    QCOMPARE(lines[7], QString("| A \\\\ and a &lt;b>. |  |"));
  }

  void aWebPageKeepsEveryText() {
    const QString page = renderHtml(sample(), {.showsTimes = false});
    QVERIFY(page.contains("<title>Rivers &amp; &lt;seas&gt;</title>"));
    // Read as XML but for the two elements without an end, which HTML has.
    QString xml = page.mid(page.indexOf("<body>"));
    xml.replace("<br>", "<br/>").remove("</html>");
    QXmlStreamReader reader(xml);
    QStringList cells;
    while (!reader.atEnd()) {
      reader.readNext();
      if (reader.isStartElement() && reader.name() == QString("td")) {
        cells += reader.readElementText(QXmlStreamReader::IncludeChildElements);
      }
    }
    QVERIFY2(!reader.hasError(), qPrintable(reader.errorString()));
    QCOMPARE(cells.size(), 6);
    QCOMPARE(cells[0], QString("Rivers | findthe sea."));
    QCOMPARE(cells[3], QString("A \\ and a <b>."));
  }

  void exportsAreTheTables() {
    QCOMPARE(sample().exportAs({.format = SessionFormat::html}), renderHtml(sample(), {}).toUtf8());
    const QByteArray part =
        sample().exportAs({.format = SessionFormat::markdownTable, .lines = LineRange{1, 1}});
    QVERIFY(!part.contains("Rivers |") && part.contains("and a"));
  }
};

QTEST_GUILESS_MAIN(SessionTableTest)
#include "session_table_test.moc"
