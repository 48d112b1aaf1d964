// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/caption_session.h"
#include "model/subtitles/subtitle_cues.h"
#include "support/session_samples.h"
#include "support/suite.h"

#include <QRandomGenerator>

using namespace std::chrono_literals;
using namespace velun;

namespace {

using std::chrono::milliseconds;

const QString kLong =
    "The river rises in the mountains, where nobody lives, and it takes all of nine days "
    "to find the sea. Nobody had counted them before. We walked beside it with a map.";

Line said(const QString& text, milliseconds start, milliseconds end) {
  Line line;
  line.text = text;
  line.start = start;
  line.end = end;
  return line;
}

CaptionSession sessionOf(const std::vector<Line>& lines) {
  CaptionSession session = test::sampleSession();
  session.lines = lines;
  return session;
}

std::vector<SubtitleCue> cuesOf(const std::vector<Line>& lines,
                                TranscriptContent content = TranscriptContent::original,
                                const std::optional<QString>& language = {}) {
  return subtitleCues(sessionOf(lines), content, language);
}

QStringList texts(const std::vector<CueRows>& cues) {
  QStringList texts;
  for (const CueRows& rows : cues) texts += rows.join(" / ");
  return texts;
}

QString wordsOf(const std::vector<SubtitleCue>& cues) {
  QStringList rows;
  for (const SubtitleCue& cue : cues) rows += cue.rows;
  return rows.join(' ');
}

void verifyLimits(const std::vector<SubtitleCue>& cues) {
  milliseconds free(0);
  for (const SubtitleCue& cue : cues) {
    QVERIFY2(cue.start >= free, "a caption over another");
    QVERIFY(cue.end - cue.start >= 1s);
    QVERIFY(cue.end - cue.start <= 7s);
    QVERIFY(cue.rows.size() >= 1 && cue.rows.size() <= 2);
    for (const QString& row : cue.rows) {
      QVERIFY2(columnsOf(row) <= kCueColumns, qPrintable(row));
      QVERIFY(!row.trimmed().isEmpty());
    }
    free = cue.end;
  }
}

}  // namespace

class SubtitlesTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void aCaptionBeginsWithANewSpeaker() {
    std::vector<Line> lines = {said("Good morning.", 0s, 2s), said("Hello.", 3s, 5s),
                               said("And you?", 6s, 8s), said("Yes.", 9s, 10s),
                               said("Well.", 11s, 13s)};
    lines[0].speaker = lines[1].speaker = "1";
    lines[2].speaker = "Anna";
    lines[4].speaker = "Anna";
    const std::vector<SubtitleCue> cues = cuesOf(lines);
    QStringList shown;
    for (const SubtitleCue& cue : cues) shown += cue.rows.join(" / ");
    QCOMPARE(shown, QStringList(
                        {"Speaker 1: Good morning.", "Hello.", "Anna: And you?", "Yes.", "Well."}));
  }

  void theSpeakerIsBeforeTheTextThatComesFirst() {
    Line line = said("Good morning.", 0s, 2s);
    line.speaker = "1";
    line.translations["es"] = "Buenos días.";
    const std::vector<SubtitleCue> cues = cuesOf({line}, TranscriptContent::both, "es");
    QCOMPARE(cues.size(), std::size_t(1));
    QCOMPARE(cues[0].rows, QStringList({"Speaker 1: Good morning.", "Buenos días."}));
    QCOMPARE(cuesOf({line}, TranscriptContent::translation, "es").at(0).rows,
             QStringList("Speaker 1: Buenos días."));
  }

  void aShortSentenceStaysWholeAboveALongTranslation() {
    Line line = said("Nobody expected it to rain all day.", 0s, 4s);
    line.translations["es"] = "Nadie esperaba que fuera a llover durante todo el santo día de hoy.";
    const auto cues = cuesOf({line}, TranscriptContent::both, "es");
    QVERIFY(cues.size() > 1);
    for (const SubtitleCue& cue : cues) QCOMPARE(cue.rows[0], line.text);
    verifyLimits(cues);
  }

  void aShortTextIsOneRow() {
    QCOMPARE(texts(breakIntoCues("Welcome  back\nto the show.", 2, 1)),
             QStringList("Welcome back to the show."));
    QVERIFY(breakIntoCues(" \n", 2, 1).empty());
  }

  void breaksWhereSentencesAndClausesEnd() {
    QCOMPARE(texts(breakIntoCues("We walked for nine days. Nobody had counted them before.", 2, 1)),
             QStringList("We walked for nine days. / Nobody had counted them before."));
    QCOMPARE(texts(breakIntoCues(kLong, 2, 1)),
             QStringList({"The river rises in the mountains, / where nobody lives,",
                          "and it takes all of nine / days to find the sea.",
                          "Nobody had counted them before. / We walked beside it with a map."}));
  }

  void leavesNoWordAlone() {
    const auto cues = breakIntoCues(
        "It takes the river all of nine long days to find its way down to the wide and open sea "
        "again.",
        2, 1);
    QCOMPARE(cues.size(), std::size_t{2});
    QVERIFY(cues.back().join(' ').count(' ') >= 2);
  }

  void breaksTextsWithoutSpacesAndWordsThatAreTooLong() {
    const QString japanese = QString("川は山から流れて海へ向かいます。").repeated(4);
    for (const CueRows& rows : breakIntoCues(japanese, 2, 1)) {
      for (const QString& row : rows) QVERIFY2(columnsOf(row) <= kCueColumns, qPrintable(row));
    }
    const QString word(100, u'w');
    QString joined;
    for (const CueRows& rows : breakIntoCues(word, 2, 1)) joined += rows.join("");
    QCOMPARE(joined, word);
  }

  /// In one piece this would take hours.
  void aTextWithoutEndIsBrokenInPieces() {
    const QString text = (kLong + u' ').repeated(1000) + QString(50'000, u'w');
    const auto cues = breakIntoCues(text, 2, 1);
    QString joined;
    for (const CueRows& rows : cues) {
      for (const QString& row : rows) QVERIFY2(columnsOf(row) <= kCueColumns, qPrintable(row));
      joined += rows.join("");
    }
    QCOMPARE(joined.remove(u' '), QString(text).remove(u' '));
    QVERIFY(cues.size() < static_cast<std::size_t>(text.size()) / 30);
    // A slow line still becomes as many captions as it needs.
    QVERIFY(breakIntoCues((kLong + u' ').repeated(1000), 2, 6000).size() >= 6000);
  }

  void wideCharactersTakeTwoColumns() {
    QCOMPARE(columnsOf(u"강 a"), 4);
    // Beyond the first plane.
    QCOMPARE(columnsOf(u"\U00020000"), 2);
  }

  void timesAreTheRecognizers() {
    const auto cues = cuesOf({said("One.", 1500ms, 3s), said("Two.", 10s, 12s)});
    QCOMPARE(cues.size(), std::size_t{2});
    QCOMPARE(cues[0].start, 1500ms);
    QCOMPARE(cues[0].end, 3s);
    QCOMPARE(cues[1].start, 10s);
  }

  void aLongLineSharesItsTime() {
    const auto cues = cuesOf({said(kLong, 0ms, 12s)});
    QCOMPARE(cues.size(), std::size_t{3});
    QCOMPARE(cues.front().start, 0ms);
    QCOMPARE(cues[1].start, cues[0].end);
    QVERIFY(cues[1].start > 3s && cues[1].start < 5s);
    verifyLimits(cues);
  }

  void aShortCaptionStaysForASecondAndPutsTheNextOff() {
    const auto cues = cuesOf({said("Yes.", 2s, 2200ms), said("No.", 2300ms, 2500ms)});
    QCOMPARE(cues[0].end, 3s);
    QCOMPARE(cues[1].start, 3s);
    QCOMPARE(cues[1].end, 4s);
  }

  void aSlowLineBecomesSeveralCaptionsOrEndsBeforeTheTimeDoes() {
    QVERIFY(cuesOf({said(kLong, 0ms, 40s)}).size() >= 6);
    const auto cues = cuesOf({said("Yes.", 0ms, 40s)});
    QCOMPARE(cues.size(), std::size_t{1});
    QCOMPARE(cues[0].end, 7s);
  }

  void withoutRecognizedTimesALineEndsWhenItWasFinished() {
    CaptionSession session = test::sampleSession();
    const auto cues = subtitleCues(session, TranscriptContent::original, {});
    QCOMPARE(cues.size(), std::size_t{2});
    // Finished 9 and 13 seconds after the start.
    QVERIFY(cues[0].start > 6s && cues[0].start < 9s);
    QVERIFY(cues[0].end >= 9s);
    QVERIFY(cues[1].start >= 9s && cues[1].end >= 13s);
  }

  void linesWithoutAnyTimeFollowOneAnother() {
    Line legacy;
    legacy.text = "Good evening, everyone, and welcome.";
    const auto cues = cuesOf({legacy, legacy});
    QCOMPARE(cues[0].start, 0ms);
    QCOMPARE(cues[1].start, cues[0].end);
    verifyLimits(cues);
  }

  void showsOriginalAndTranslationTogether() {
    Line line = said(kLong, 0ms, 12s);
    line.translations["ko"] = "강은 산에서 시작합니다.";
    line.translations["de"] = "Der Fluss.";
    const auto cues = cuesOf({line}, TranscriptContent::both, "ko");
    verifyLimits(cues);
    for (const SubtitleCue& cue : cues) QCOMPARE(cue.rows.size(), 2);
    QVERIFY(cues[0].rows[0].startsWith("The river"));
    QVERIFY(cues[0].rows[1].startsWith("강은"));
    QCOMPARE(cuesOf({line}, TranscriptContent::translation, "ko").at(0).rows,
             QStringList("강은 산에서 시작합니다."));
    // Room for one: the first.
    QCOMPARE(cuesOf({line}, TranscriptContent::translation).at(0).rows, QStringList("Der Fluss."));
  }

  void anUntranslatedLineIsOnlyInTheOriginal() {
    const Line line = said("Hello.", 0ms, 1s);
    QVERIFY(cuesOf({line}, TranscriptContent::translation).empty());
    QCOMPARE(cuesOf({line}, TranscriptContent::both).at(0).rows, QStringList("Hello."));
  }

  void everySessionKeepsTheLimitsAndEveryWord() {
    QRandomGenerator random(7);
    for (int round = 0; round < 200; ++round) {
      std::vector<Line> lines;
      QStringList words;
      milliseconds at(0);
      const int count = random.bounded(1, 12);
      for (int i = 0; i < count; ++i) {
        QStringList own;
        const int size = random.bounded(1, 60);
        for (int w = 0; w < size; ++w) own += QString(random.bounded(1, 14), QChar('a' + w % 26));
        const milliseconds start = at + milliseconds(random.bounded(3000));
        at = start + milliseconds(random.bounded(20000));
        lines.push_back(said(own.join(' '), start, at));
        words += own;
      }
      const auto cues = cuesOf(lines);
      verifyLimits(cues);
      QCOMPARE(wordsOf(cues), words.join(' '));
    }
  }

  void writesSubRip() {
    const CaptionSession session =
        sessionOf({said("One --> two.", 1500ms, 3s), said("Late.", 3723004ms, 3725s)});
    QCOMPARE(QString::fromUtf8(session.exportAs({.format = SessionFormat::subRip})),
             QString("1\n00:00:01,500 --> 00:00:03,000\nOne → two.\n\n"
                     "2\n01:02:03,004 --> 01:02:05,000\nLate.\n\n"));
  }

  void writesWebVTT() {
    const CaptionSession session = sessionOf({said("Salt & <pepper> -->", 1500ms, 3s)});
    QCOMPARE(QString::fromUtf8(session.exportAs({.format = SessionFormat::webVTT})),
             QString("WEBVTT\n\n00:00:01.500 --> 00:00:03.000\n"
                     "Salt &amp; &lt;pepper&gt; --&gt;\n\n"));
  }

  void aPartOfASessionKeepsItsTimes() {
    const CaptionSession session =
        sessionOf({said("One.", 0s, 2s), said("Two.", 5s, 7s), said("Three.", 8s, 9s)});
    const ExportOptions options{.format = SessionFormat::subRip, .lines = LineRange{1, 1}};
    QCOMPARE(QString::fromUtf8(session.exportAs(options)),
             QString("1\n00:00:05,000 --> 00:00:07,000\nTwo.\n\n"));
    ExportOptions beyond = options;
    beyond.lines = LineRange{7, 9};
    QVERIFY(session.exportAs(beyond).isEmpty());
  }
};

QTEST_GUILESS_MAIN(SubtitlesTest)
#include "subtitles_test.moc"
