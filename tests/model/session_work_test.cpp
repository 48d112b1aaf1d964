// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/session_work.h"

#include "model/session_file/session_file.h"
#include "support/suite.h"

using namespace velun;
using namespace std::chrono_literals;

namespace {

Line said(const QString& text, std::optional<std::chrono::milliseconds> start = {}) {
  Line line;
  line.text = text;
  line.start = start;
  if (start) line.end = *start + 1s;
  return line;
}

CaptionSession sessionAt(Instant start, const QString& title, std::vector<Line> lines) {
  CaptionSession session;
  session.startedAt = start;
  session.endedAt = start + 10min;
  session.title = title;
  session.lines = std::move(lines);
  return session;
}

}  // namespace

class SessionWorkTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void aSentenceBecomesATitle_data() {
    QTest::addColumn<QString>("sentence");
    QTest::addColumn<QString>("title");
    QTest::newRow("short") << " Thank  you. "
                           << "Thank you.";
    QTest::newRow("long")
        << "The river rises in the mountains, where nobody lives, and takes nine days."
        << "The river rises in the mountains, where nobody lives, and…";
    QTest::newRow("one word") << QString(100, 'a') << QString(60, 'a') + "…";
    QTest::newRow("Korean") << "안녕하세요 여러분."
                            << "안녕하세요 여러분.";
  }
  void aSentenceBecomesATitle() {
    QFETCH(QString, sentence);
    QFETCH(QString, title);
    QCOMPARE(titleFromSentence(sentence), title);
  }

  void sessionsAreCombinedInTheOrderOfTheirStarts() {
    const Instant morning{1'700'000'000s};
    const CaptionSession later = sessionAt(morning + 1h, "Later", {said("Two.", 5s)});
    const CaptionSession first = sessionAt(morning, "First", {said("One.", 2s), said("More.")});
    const CaptionSession both = combined({later, first});
    QCOMPARE(both.title, "First");
    QCOMPARE(both.startedAt, morning);
    QCOMPARE(*both.endedAt, Instant(morning + 1h + 10min));
    QVERIFY(both.id != first.id && both.id != later.id);
    QCOMPARE(both.lines.size(), std::size_t(3));
    QCOMPARE(both.lines[2].text, "Two.");
    QVERIFY(*both.lines[2].start == 1h + 5s);
    QVERIFY(*both.lines[2].end == 1h + 6s);
    QVERIFY(!both.lines[1].start);
  }

  void timesThatNoFileCouldHoldAreLeftOut() {
    CaptionSession first = sessionAt(Instant{0s}, "Wrong clock", {said("One.")});
    CaptionSession later = sessionAt(Instant{1'700'000'000s}, "Later", {said("Two.")});
    for (CaptionSession* session : {&first, &later}) {
      session->lines[0].start = 5s;
      session->lines[0].end = 6s;
    }
    const CaptionSession both = combined({later, first});
    QCOMPARE(*both.lines[0].end, std::chrono::milliseconds(6s));
    QVERIFY(!both.lines[1].start && !both.lines[1].end);
    QCOMPARE(decodeSession(encodeSession(both)).lines.size(), std::size_t(2));
  }

  void aSessionCombinedWithItselfHasDifferentLines() {
    const CaptionSession session = sessionAt(Instant{1'700'000'000s}, "A", {said("One.")});
    const CaptionSession both = combined({session, session});
    QVERIFY(both.lines[0].id != both.lines[1].id);
  }

  void speakersOfDifferentSessionsStayDifferent() {
    const Instant morning{1'700'000'000s};
    CaptionSession first = sessionAt(morning, "First", {said("One."), said("Two.")});
    first.lines[1].speaker = "2";
    CaptionSession later = sessionAt(morning + 1h, "Later", {said("Three."), said("Four.")});
    later.lines[0].speaker = "1";
    later.lines[1].speaker = "Anna";
    const CaptionSession both = combined({first, later});
    QVERIFY(!both.lines[0].speaker);
    QCOMPARE(*both.lines[1].speaker, "2");
    QCOMPARE(*both.lines[2].speaker, "3");
    QCOMPARE(*both.lines[3].speaker, "Anna");
  }

  void statisticsCountTheSentencesOfEachSpeaker() {
    CaptionSession session = sessionAt(Instant{1'700'000'000s}, "A",
                                       {said("One."), said("Two."), said("Three."), said("Four.")});
    session.lines[0].speaker = "2";
    session.lines[2].speaker = "2";
    session.lines[3].speaker = "Anna";
    QVERIFY(statisticsText(session).endsWith("\nSpeaker 2?: 2 sentences\nAnna: 1 sentence"));
  }

  void statisticsCountWordsSentencesAndLength() {
    CaptionSession session =
        sessionAt(Instant{1'700'000'000s}, "A",
                  {said("Thank you, it’s 12% more."), said("안녕하세요 여러분.")});
    session.lines[1].translations["en"] = "Hello everyone.";
    const SessionStatistics counts = statistics(session);
    QCOMPARE(counts.words, std::size_t(7));
    QCOMPARE(counts.sentences, std::size_t(2));
    QCOMPARE(counts.translatedSentences, std::size_t(1));
    QCOMPARE(counts.length, std::chrono::seconds(10min));
    QCOMPARE(statisticsText(session),
             "7 words\n2 sentences\n1 of them translated\nLength: 10 min 0 s");
  }
};

QTEST_GUILESS_MAIN(SessionWorkTest)
#include "session_work_test.moc"
