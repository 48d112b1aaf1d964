// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/session_sections.h"

#include "language/localization.h"
#include "support/suite.h"
#include "support/time_zone.h"

#include <QTimeZone>

using namespace velun;

class SessionSectionsTest final : public test::Suite {
  Q_OBJECT

  static Instant at(const QString& text) {
    const QDateTime time = QDateTime::fromString(text, Qt::ISODate);
    return Instant(std::chrono::milliseconds(time.toMSecsSinceEpoch()));
  }

 private Q_SLOTS:
  void cleanup() {
    Localization::shared().setLanguage(AppLanguage::english);
    test::setTimeZone("UTC");
  }

  void sectionsFollowCalendarDays_data() {
    QTest::addColumn<QString>("startedAt");
    QTest::addColumn<QString>("section");
    QTest::newRow("this minute") << "2025-03-20T12:00:00"
                                 << "Today";
    QTest::newRow("midnight today") << "2025-03-20T00:00:00"
                                    << "Today";
    QTest::newRow("later today") << "2025-03-20T23:59:59"
                                 << "Today";
    QTest::newRow("in the future") << "2025-04-01T12:00:00"
                                   << "Today";
    QTest::newRow("a second before midnight") << "2025-03-19T23:59:59"
                                              << "Yesterday";
    QTest::newRow("the morning before") << "2025-03-19T00:00:00"
                                        << "Yesterday";
    QTest::newRow("two days back") << "2025-03-18T23:00:00"
                                   << "Previous 7 Days";
    QTest::newRow("six days back") << "2025-03-14T00:00:00"
                                   << "Previous 7 Days";
    QTest::newRow("seven days back") << "2025-03-13T23:59:59"
                                     << "Previous 30 Days";
    QTest::newRow("29 days back") << "2025-02-19T00:00:00"
                                  << "Previous 30 Days";
    QTest::newRow("30 days back") << "2025-02-18T23:59:59"
                                  << "February 2025";
    QTest::newRow("last year") << "2024-11-02T12:00:00"
                               << "November 2024";
  }
  void sectionsFollowCalendarDays() {
    QFETCH(QString, startedAt);
    QFETCH(QString, section);
    QCOMPARE(sectionTitle(at(startedAt), QDate(2025, 3, 20)), section);
  }

  void sectionsAreNamedInKorean() {
    Localization::shared().setLanguage(AppLanguage::korean);
    const QDate today(2025, 3, 20);
    QCOMPARE(sectionTitle(at("2025-03-20T01:00:00"), today), QString("오늘"));
    QCOMPARE(sectionTitle(at("2025-03-19T01:00:00"), today), QString("어제"));
    QCOMPARE(sectionTitle(at("2025-03-17T01:00:00"), today), QString("지난 7일"));
    QCOMPARE(sectionTitle(at("2025-03-01T01:00:00"), today), QString("지난 30일"));
    QCOMPARE(sectionTitle(at("2024-11-02T01:00:00"), today), QString("2024년 11월"));
  }

  void shortDayCountsAsADay() {
    // Daylight saving time began in New York on 9 March 2025, so that day had 23 hours.
    test::setTimeZone("America/New_York");
    QCOMPARE(sectionTitle(at("2025-03-09T04:30:00Z"), QDate(2025, 3, 9)), QString("Yesterday"));
    QCOMPARE(sectionTitle(at("2025-03-09T05:30:00Z"), QDate(2025, 3, 9)), QString("Today"));
    QCOMPARE(sectionTitle(at("2025-03-10T03:59:00Z"), QDate(2025, 3, 10)), QString("Yesterday"));
    QCOMPARE(sectionTitle(at("2025-03-10T04:01:00Z"), QDate(2025, 3, 10)), QString("Today"));
  }
};

QTEST_GUILESS_MAIN(SessionSectionsTest)
#include "session_sections_test.moc"
