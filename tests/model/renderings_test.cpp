// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/localization.h"
#include "model/caption_session.h"
#include "support/session_samples.h"
#include "support/suite.h"
#include "support/time_zone.h"

#include <QFile>

using namespace velun;

namespace {

/// One line of each kind.
CaptionSession session() {
  CaptionSession session = test::sampleSession();
  session.title = "Rivers / 강";
  Line& welcome = session.lines[0];
  welcome.translations["ja"] = "番組へようこそ。";
  Line& rivers = session.lines[1];
  rivers.text = "강 이야기입니다.";
  rivers.sourceLanguage = "ko_KR";
  rivers.input = AudioInput::microphone;
  rivers.translations["en"] = "It is about rivers.\nAnd the sea.";
  Line timeless;
  timeless.text = "No time at all.";
  Line legacy;
  legacy.text = "Good evening, everyone.";
  legacy.legacyTimestamp = "14:03:22";
  legacy.legacyTranslation = "안녕하세요\n여러분";
  Line nameless;
  nameless.time = test::utc(2025, 3, 1, 9, 5, 20);
  nameless.text = "Untranslated.";
  nameless.sourceLanguage = "zz_QQ";
  session.lines.insert(session.lines.end(), {timeless, legacy, nameless});
  return session;
}

CaptionSession sessionOf(const Line& line) {
  CaptionSession session = test::sampleSession();
  session.lines = {line};
  return session;
}

QString exported(const CaptionSession& session, SessionFormat format, TranscriptContent content,
                 const std::optional<QString>& language = {}) {
  return QString::fromUtf8(session.exportAs({format, content, language}));
}

const QString kHeader =
    "Caption Session\n"
    "Started: March 1, 2025 at 6:04:58\u202FPM\n"
    "Stopped: March 1, 2025 at 6:12:40\u202FPM\n"
    "\n";

}  // namespace

class RenderingsTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void aKnownSpeakerStandsBeforeTheLanguage() {
    Line line;
    line.text = "Hello.";
    line.sourceLanguage = "en_US";
    line.speaker = "1";
    const QString text =
        exported(sessionOf(line), SessionFormat::text, TranscriptContent::original);
    QVERIFY2(text.contains("\nSpeaker 1 · Original · English (United States)\nHello."),
             qUtf8Printable(text));
    line.speaker = "Anna";
    const QString markdown =
        exported(sessionOf(line), SessionFormat::markdown, TranscriptContent::original);
    QVERIFY2(markdown.contains("### Anna · Original · English (United States)\n"),
             qUtf8Printable(markdown));
  }

  void initTestCase() { test::setTimeZone("Asia/Seoul"); }
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void timesCanBeLeftOut() {
    const ExportOptions options{.format = SessionFormat::text, .showsTimes = false};
    QCOMPARE(QString::fromUtf8(sessionOf(test::sampleSession().lines[1]).exportAs(options)),
             kHeader +
                 "Original · English (United States) · Computer Audio\n"
                 "Today we talk about rivers.\n\n");
  }

  void rendersExactDocuments_data() {
    QTest::addColumn<QString>("file");
    QTest::addColumn<AppLanguage>("language");
    QTest::addColumn<SessionFormat>("format");
    QTest::newRow("markdown, English")
        << "both_en.md" << AppLanguage::english << SessionFormat::markdown;
    QTest::newRow("markdown, Korean")
        << "both_ko.md" << AppLanguage::korean << SessionFormat::markdown;
    QTest::newRow("text, English") << "both_en.txt" << AppLanguage::english << SessionFormat::text;
    QTest::newRow("text, Korean") << "both_ko.txt" << AppLanguage::korean << SessionFormat::text;
  }
  void rendersExactDocuments() {
    QFETCH(QString, file);
    QFETCH(AppLanguage, language);
    QFETCH(SessionFormat, format);
    Localization::shared().setLanguage(language);
    QFile expected(QStringLiteral(VELUN_TEST_DATA "/") + file);
    QVERIFY(expected.open(QIODevice::ReadOnly));
    QCOMPARE(exported(session(), format, TranscriptContent::both),
             QString::fromUtf8(expected.readAll()));
  }

  void runningSessionHasNoEndLine() {
    CaptionSession running = test::sampleSession();
    running.endedAt.reset();
    running.lines.clear();
    QCOMPARE(exported(running, SessionFormat::text, TranscriptContent::both),
             QString("Caption Session\nStarted: March 1, 2025 at 6:04:58\u202FPM\n\n"));
    QCOMPARE(exported(running, SessionFormat::markdown, TranscriptContent::both),
             QString("# Caption Session\n\nStarted: March 1, 2025 at 6:04:58\u202FPM\n\n"));
  }

  void originalOnlyOmitsTranslations() {
    QCOMPARE(exported(test::sampleSession(), SessionFormat::text, TranscriptContent::original),
             kHeader +
                 "[6:05:07\u202FPM] Original · English (United States) · Computer Audio\n"
                 "Welcome back to the show.\n\n"
                 "[6:05:11\u202FPM] Original · English (United States) · Computer Audio\n"
                 "Today we talk about rivers.\n\n");
  }

  void translationOnlyOmitsUntranslatedLines() {
    QCOMPARE(
        exported(test::sampleSession(), SessionFormat::text, TranscriptContent::translation,
                 QString("ko")),
        kHeader + "[6:05:07\u202FPM] Translation · Korean\n쇼에 다시 오신 것을 환영합니다.\n\n");
    QCOMPARE(exported(test::sampleSession(), SessionFormat::text, TranscriptContent::translation,
                      QString("ja")),
             kHeader);
  }

  void translationOnlyOfAnUntranslatedSessionIsTheHeader() {
    CaptionSession untranslated = test::sampleSession();
    untranslated.lines[0].translations.clear();
    QCOMPARE(exported(untranslated, SessionFormat::text, TranscriptContent::translation), kHeader);
  }

  void chosenLanguageOmitsOtherLanguages() {
    const QString document =
        exported(session(), SessionFormat::markdown, TranscriptContent::both, QString("ko"));
    QVERIFY(document.contains("**Translation · Korean**"));
    QVERIFY(!document.contains("**Translation · Japanese**"));
    QVERIFY(!document.contains("**Translation · English**"));
  }

  void legacyTranslationAppearsUnderEveryLanguage() {
    const CaptionSession legacy = sessionOf(session().lines[3]);
    const QString block = "[14:03:22] Translation · Unknown language\n안녕하세요\n여러분\n\n";
    QCOMPARE(exported(legacy, SessionFormat::text, TranscriptContent::translation, QString("ja")),
             kHeader + block);
    QCOMPARE(exported(legacy, SessionFormat::text, TranscriptContent::translation),
             kHeader + block);
  }

  void emptyTranslationIsItsOwnBlock() {
    Line line = session().lines[0];
    line.translations = {{"ko", ""}};
    QVERIFY(exported(sessionOf(line), SessionFormat::markdown, TranscriptContent::translation)
                .endsWith("**Translation · Korean**\n\n> \n\n"));
  }

  void quotesNewlinesAtTheEndsOfATranslation() {
    Line line = session().lines[0];
    line.translations = {{"ko", "\na\n"}};
    QVERIFY(exported(sessionOf(line), SessionFormat::markdown, TranscriptContent::translation)
                .endsWith("\n\n> \n> a\n> \n\n"));
  }

  void transcriptHasTextsOnly() {
    const CaptionSession all = session();
    QCOMPARE(all.transcript(TranscriptContent::original, {}),
             QString("Welcome back to the show.\n\n강 이야기입니다.\n\nNo time at all.\n\nGood "
                     "evening, everyone.\n\nUntranslated."));
    QCOMPARE(all.transcript(TranscriptContent::translation, QString("ko")),
             QString("쇼에 다시 오신 것을 환영합니다.\n\n안녕하세요\n여러분"));
    QCOMPARE(test::sampleSession().transcript(TranscriptContent::both, {}),
             QString("Welcome back to the show.\n쇼에 다시 오신 것을 환영합니다.\n\nToday we talk "
                     "about rivers."));
  }

  void transcriptOmitsOnlyCompletelyEmptyLines() {
    CaptionSession edge = test::sampleSession();
    edge.lines[0].text = "";
    edge.lines[1].text = "";
    QCOMPARE(edge.transcript(TranscriptContent::both, {}),
             QString("\n쇼에 다시 오신 것을 환영합니다."));
    QCOMPARE(edge.transcript(TranscriptContent::original, {}), QString());
    QCOMPARE(CaptionSession().transcript(TranscriptContent::both, {}), QString());
  }
};

QTEST_GUILESS_MAIN(RenderingsTest)
#include "renderings_test.moc"
