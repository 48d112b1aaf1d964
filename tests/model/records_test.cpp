// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/localization.h"
#include "model/caption_session.h"
#include "support/session_samples.h"
#include "support/suite.h"
#include "support/time_zone.h"

using namespace velun;

namespace {

using Pairs = std::vector<std::pair<QString, QString>>;

Line lineWith(const Translations& translations) {
  Line line;
  line.text = "text";
  line.translations = translations;
  return line;
}

Line legacyLine() {
  Line line;
  line.text = "Good evening, everyone.";
  line.legacyTimestamp = "14:03:22";
  line.legacyTranslation = "hello";
  return line;
}

}  // namespace

class RecordsTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { test::setTimeZone("Asia/Seoul"); }
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void inputsHaveRawValuesAndTitles() {
    QCOMPARE(allAudioInputs.size(), 2u);
    QCOMPARE(rawValue(allAudioInputs[0]), QString("computer"));
    QCOMPARE(rawValue(allAudioInputs[1]), QString("microphone"));
    QCOMPARE(title(AudioInput::computer), QString("Computer Audio"));
    QCOMPARE(title(AudioInput::microphone), QString("Microphone"));
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(title(AudioInput::computer), QString("컴퓨터 오디오"));
    QCOMPARE(title(AudioInput::microphone), QString("마이크"));
  }

  void contentsHaveTitles() {
    const QStringList english = {"Original + Translation", "Original Only", "Translation Only"};
    const QStringList korean = {"원문 + 번역", "원문만", "번역만"};
    QCOMPARE(allTranscriptContents.size(), 3u);
    for (std::size_t i = 0; i < allTranscriptContents.size(); ++i) {
      const TranscriptContent content = allTranscriptContents[i];
      const auto row = static_cast<qsizetype>(i);
      Localization::shared().setLanguage(AppLanguage::english);
      QCOMPARE(title(content), english[row]);
      Localization::shared().setLanguage(AppLanguage::korean);
      QCOMPARE(title(content), korean[row]);
    }
  }

  void formatsHaveRawValuesAndTitles() {
    const QStringList raws = {"markdown", "text",   "markdownTable", "html",
                              "subRip",   "webVTT", "json"};
    const QStringList extensions = {"md", "txt", "md", "html", "srt", "vtt", "json"};
    const QStringList english = {"Markdown (.md)",          "Text (.txt)",
                                 "Markdown Table (.md)",    "Web Page (.html)",
                                 "SubRip Subtitles (.srt)", "WebVTT Subtitles (.vtt)",
                                 "Velun Session (.json)"};
    const QStringList korean = {"Markdown (.md)",    "텍스트 (.txt)",      "Markdown 표 (.md)",
                                "웹 페이지 (.html)", "SubRip 자막 (.srt)", "WebVTT 자막 (.vtt)",
                                "Velun 기록 (.json)"};
    QCOMPARE(allSessionFormats.size(), 7u);
    for (std::size_t i = 0; i < allSessionFormats.size(); ++i) {
      const SessionFormat format = allSessionFormats[i];
      const auto row = static_cast<qsizetype>(i);
      Localization::shared().setLanguage(AppLanguage::english);
      QCOMPARE(rawValue(format), raws[row]);
      QCOMPARE(fileExtension(format), extensions[row]);
      QCOMPARE(title(format), english[row]);
      Localization::shared().setLanguage(AppLanguage::korean);
      QCOMPARE(title(format), korean[row]);
    }
  }

  void formatsHaveExplanations() {
    const QString textual =
        "Shows times and languages, with the original and translations set apart.";
    QCOMPARE(explanation(SessionFormat::markdown), textual);
    QCOMPARE(explanation(SessionFormat::text), textual);
    QCOMPARE(explanation(SessionFormat::json),
             QString("Keeps the original, all translations, and times, and can be reopened in "
                     "Velun."));
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(explanation(SessionFormat::text),
             QString("시간과 언어를 표시하고 원문과 번역을 구분합니다."));
    QCOMPARE(explanation(SessionFormat::json),
             QString("원문·모든 번역·시간을 보존하며 Velun에서 다시 열 수 있습니다."));
  }

  void exportFileNameHasTheDateInUtc() {
    // Already 2 March in the local time zone.
    const Instant late = test::utc(2025, 3, 1, 23, 30, 0);
    QCOMPARE(defaultFileName(SessionFormat::markdown, late), QString("Velun-2025-03-01.md"));
    QCOMPARE(defaultFileName(SessionFormat::text, late), QString("Velun-2025-03-01.txt"));
    QCOMPARE(defaultFileName(SessionFormat::json, late), QString("Velun-2025-03-01.json"));
  }

  void newLineHasOnlyAUniqueId() {
    const Line line;
    QVERIFY(!line.id.isNull());
    QVERIFY(line.id != Line().id);
    QVERIFY(!line.time && !line.sourceLanguage && !line.input);
    QVERIFY(!line.legacyTimestamp && !line.legacyTranslation);
    QVERIFY(line.text.isEmpty() && line.translations.empty());
  }

  void linesWithDifferentIdsAreNotEqual() {
    Line a;
    Line b;
    a.text = b.text = "the same";
    QVERIFY(a != b);
    b.id = a.id;
    QVERIFY(a == b);
  }

  void lineEqualityComparesEveryField() {
    const Line line = test::sampleSession().lines.front();
    const auto differs = [&line](auto change) {
      Line other = line;
      change(other);
      return other != line;
    };
    QVERIFY(differs([](Line& l) { l.time.reset(); }));
    QVERIFY(differs([](Line& l) { *l.time += std::chrono::microseconds(1); }));
    QVERIFY(differs([](Line& l) { l.text += "."; }));
    QVERIFY(differs([](Line& l) { l.sourceLanguage = "ko_KR"; }));
    QVERIFY(differs([](Line& l) { l.input = AudioInput::microphone; }));
    QVERIFY(differs([](Line& l) { l.translations["ko"] = ""; }));
    QVERIFY(differs([](Line& l) { l.legacyTimestamp = ""; }));
    QVERIFY(differs([](Line& l) { l.legacyTranslation = ""; }));
    QVERIFY(differs([](Line& l) { l.original = ""; }));
  }

  void aCorrectionKeepsTheFirstText() {
    Line line;
    line.text = "Their is one.";
    const Line before = line;
    line.correct("There are one.");
    line.correct("There is one.");
    QCOMPARE(line.text, QString("There is one."));
    QCOMPARE(line.original.value_or(QString()), QString("Their is one."));
    line.correct("Their is one.");
    QVERIFY(line == before);
  }

  void timestampIsTheLegacyTextElseTheTimeOfDayElseEmpty() {
    Line line;
    QCOMPARE(line.timestamp(), QString());
    line.time = test::utc(2025, 3, 1, 9, 5, 7);
    QCOMPARE(line.timestamp(), QString("6:05:07\u202FPM"));
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(line.timestamp(), QString("오후 6:05:07"));
    line.legacyTimestamp = "00:01:02";
    QCOMPARE(line.timestamp(), QString("00:01:02"));
    line.legacyTimestamp = "";
    QCOMPARE(line.timestamp(), QString());
  }

  void oneLanguageGivesItsTranslationOrNothing() {
    const Line line = lineWith({{"ja", "..."}});
    QCOMPARE(line.translatedTexts(QString("ko")), Pairs());
    QCOMPARE(line.translatedTexts(QString("ja")), (Pairs{{"ja", "..."}}));
  }

  void translationsAreInAscendingOrder() {
    const Line line = lineWith({{"ko", "b"}, {"en", "a"}});
    QCOMPARE(line.translatedTexts({}), (Pairs{{"en", "a"}, {"ko", "b"}}));
  }

  void legacyTranslationComesLastUnderEveryLanguage() {
    Line line = legacyLine();
    QCOMPARE(line.translatedTexts(QString("ko")), (Pairs{{"", "hello"}}));
    line.translations["ko"] = "안녕";
    QCOMPARE(line.translatedTexts(QString("ko")), (Pairs{{"ko", "안녕"}, {"", "hello"}}));
    QCOMPARE(line.translatedTexts({}), (Pairs{{"ko", "안녕"}, {"", "hello"}}));
    line.legacyTranslation = "";
    QCOMPARE(line.translatedTexts(QString("ja")), (Pairs{{"", ""}}));
  }

  void sessionLanguagesAreSortedAndUnique() {
    CaptionSession session;
    QVERIFY(session.translationLanguages().empty());
    session.lines = {lineWith({{"ko", "x"}}), lineWith({{"en", "x"}, {"ko", "x"}}), lineWith({})};
    QCOMPARE(session.translationLanguages(), (std::vector<QString>{"en", "ko"}));
  }

  void languagesAreOrderedByCodePoint() {
    // One code point above U+FFFF, whose first unit (D83D) is less than U+FF21.
    const QString astral = QString::fromUcs4(U"\U0001F600", 1);
    const QString wide = QString(QChar(0xFF21));
    CaptionSession session;
    session.lines = {lineWith({{astral, "x"}, {wide, "x"}, {"ko", "x"}})};
    QCOMPARE(session.translationLanguages(), (std::vector<QString>{"ko", wide, astral}));
  }

  void legacyTranslationHasNoLanguage() {
    CaptionSession session;
    QVERIFY(!session.hasTranslations());
    session.lines = {lineWith({})};
    QVERIFY(!session.hasTranslations());
    session.lines = {legacyLine()};
    QVERIFY(session.hasTranslations());
    QVERIFY(session.translationLanguages().empty());
    session.lines.front().legacyTranslation = "";
    QVERIFY(session.hasTranslations());
  }

  void newSessionIsEmptyAndStartsNow() {
    const Instant before = currentInstant();
    const CaptionSession session;
    QCOMPARE(session.schemaVersion, 1);
    QVERIFY(!session.id.isNull());
    QVERIFY(session.id != CaptionSession().id);
    QVERIFY(session.startedAt >= before && session.startedAt <= currentInstant());
    QVERIFY(!session.endedAt);
    QVERIFY(session.lines.empty());
  }

  void titleKeepsTheLanguageInWhichItWasMade() {
    const CaptionSession english;
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(english.title, QString("Caption Session"));
    QCOMPARE(CaptionSession().title, QString("자막 세션"));
  }

  void sessionEqualityComparesEveryField() {
    const CaptionSession session = test::sampleSession();
    QVERIFY(session == test::sampleSession());
    const auto differs = [&session](auto change) {
      CaptionSession other = session;
      change(other);
      return other != session;
    };
    QVERIFY(differs([](CaptionSession& s) { s.schemaVersion = 2; }));
    QVERIFY(differs([](CaptionSession& s) { s.id = QUuid(); }));
    QVERIFY(differs([](CaptionSession& s) { s.startedAt += std::chrono::microseconds(1); }));
    QVERIFY(differs([](CaptionSession& s) { s.endedAt.reset(); }));
    QVERIFY(differs([](CaptionSession& s) { s.title += "."; }));
    QVERIFY(differs([](CaptionSession& s) { std::swap(s.lines[0], s.lines[1]); }));
  }
};

QTEST_GUILESS_MAIN(RecordsTest)
#include "records_test.moc"
