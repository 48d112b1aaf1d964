// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/session_arrangement.h"

#include "support/suite.h"
#include "support/time_zone.h"

#include <QDateTime>

using namespace velun;

namespace {

const QDate kToday(2026, 3, 20);

std::shared_ptr<const ListedSession> session(const QString& title, const QDate& day, int minutes,
                                             const QString& language = "en_US",
                                             AudioInput input = AudioInput::computer) {
  CaptionSession session;
  session.title = title;
  session.startedAt =
      Instant(std::chrono::milliseconds(day.startOfDay().addSecs(3600).toMSecsSinceEpoch()));
  session.endedAt = session.startedAt + std::chrono::minutes(minutes);
  Line line;
  line.sourceLanguage = language;
  line.input = input;
  session.lines = {Line(), line};
  return listed(QUrl(), session);
}

const SavedSessions& library() {
  static const SavedSessions sessions{
      session("talk 10", kToday, 5),
      session("Talk 2", kToday.addDays(-6), 60, "de_DE"),
      session("lecture", kToday.addDays(-7), 30, "en_US", AudioInput::microphone),
      session("call", kToday.addDays(-29), 7, "de_DE", AudioInput::microphone),
      session("Zoo", QDate(2026, 1, 1), 1),
      session("Attic", QDate(2025, 12, 31), 2),
  };
  return sessions;
}

QStringList titles(const SessionArrangement& arrangement) {
  QStringList titles;
  for (const auto& saved : arranged(library(), arrangement, kToday)) {
    titles.append(saved->summary.title);
  }
  return titles;
}

}  // namespace

class SessionArrangementTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void sortsSessions_data() {
    QTest::addColumn<SessionOrder>("order");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("newest first") << SessionOrder::newestFirst
                                  << QStringList(
                                         {"talk 10", "Talk 2", "lecture", "call", "Zoo", "Attic"});
    QTest::newRow("oldest first") << SessionOrder::oldestFirst
                                  << QStringList(
                                         {"Attic", "Zoo", "call", "lecture", "Talk 2", "talk 10"});
    QTest::newRow("by title") << SessionOrder::title
                              << QStringList(
                                     {"Attic", "call", "lecture", "Talk 2", "talk 10", "Zoo"});
    QTest::newRow("longest first")
        << SessionOrder::longestFirst
        << QStringList({"Talk 2", "lecture", "call", "talk 10", "Attic", "Zoo"});
  }
  void sortsSessions() {
    QFETCH(SessionOrder, order);
    QFETCH(QStringList, expected);
    QCOMPARE(titles({.order = order}), expected);
  }

  void filtersByDate_data() {
    QTest::addColumn<SessionPeriod>("period");
    QTest::addColumn<int>("count");
    QTest::newRow("any") << SessionPeriod::any << 6;
    QTest::newRow("today") << SessionPeriod::today << 1;
    QTest::newRow("7 days") << SessionPeriod::last7Days << 2;
    QTest::newRow("30 days") << SessionPeriod::last30Days << 4;
    QTest::newRow("this year") << SessionPeriod::thisYear << 5;
  }
  void filtersByDate() {
    QFETCH(SessionPeriod, period);
    QFETCH(int, count);
    QCOMPARE(titles({.period = period}).size(), count);
  }

  void filtersByLanguageAndInput() {
    QCOMPARE(titles({.language = "de_DE"}), QStringList({"Talk 2", "call"}));
    QCOMPARE(titles({.input = AudioInput::microphone}), QStringList({"lecture", "call"}));
    QCOMPARE(titles({.language = "de_DE", .input = AudioInput::microphone}), QStringList({"call"}));
  }

  void aLineWithoutALanguageBelongsToNone() {
    CaptionSession session;
    session.lines = {Line()};
    const SavedSessions sessions{listed(QUrl(), session)};
    QVERIFY(arranged(sessions, {.language = "en_US"}, kToday).empty());
    QVERIFY(spokenLanguages(sessions).empty());
  }

  void languagesAreNamedOnce() {
    QCOMPARE(spokenLanguages(library()), std::vector<QString>({"de_DE", "en_US"}));
  }

  void onlyAFilterLeavesSessionsOut() {
    QVERIFY(!SessionArrangement{.order = SessionOrder::title}.isFilter());
    QVERIFY(SessionArrangement{.period = SessionPeriod::today}.isFilter());
    QVERIFY(SessionArrangement{.language = "en_US"}.isFilter());
    QVERIFY(SessionArrangement{.input = AudioInput::computer}.isFilter());
  }
};

QTEST_GUILESS_MAIN(SessionArrangementTest)
#include "session_arrangement_test.moc"
