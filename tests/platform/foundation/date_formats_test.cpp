// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/foundation/date_formats.h"

#include "support/suite.h"
#include "support/time_zone.h"

using namespace velun;

class DateFormatsTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    Suite::init();
    test::setTimeZone("Asia/Seoul");
  }

  void timesAndDatesFollowLocaleAndZone() {
    using namespace std::chrono;
    const Instant instant = Instant(sys_days(year(2025) / 3 / 31)) + hours(21) + minutes(4) +
                            seconds(58) + microseconds(999'999);
    QCOMPARE(timeOfDay(instant, "en"), QString("6:04:58\u202FAM"));
    QCOMPARE(timeOfDay(instant, "ko"), QString("오전 6:04:58"));
    QCOMPARE(longDateAndTime(instant, "en"), QString("April 1, 2025 at 6:04:58\u202FAM"));
    QCOMPARE(longDateAndTime(instant, "ko"), QString("2025년 4월 1일 오전 6:04:58"));
    QCOMPARE(monthAndYear(instant, "en"), QString("April 2025"));
    QCOMPARE(monthAndYear(instant, "ko"), QString("2025년 4월"));
    QCOMPARE(isoDate(instant), QString("2025-03-31"));
  }

  void midnightAndNoonAreTwelve() {
    using namespace std::chrono;
    const Instant midnight = Instant(sys_days(year(2025) / 3 / 1)) + hours(15);
    QCOMPARE(timeOfDay(midnight, "en"), QString("12:00:00\u202FAM"));
    QCOMPARE(timeOfDay(midnight + hours(12), "ko"), QString("오후 12:00:00"));
  }

  void changedTimeZoneIsUsed() {
    using namespace std::chrono;
    const Instant instant = Instant(sys_days(year(2025) / 7 / 31)) + hours(21);
    QCOMPARE(longDateAndTime(instant, "en"), QString("August 1, 2025 at 6:00:00\u202FAM"));
    test::setTimeZone("America/New_York");
    QCOMPARE(longDateAndTime(instant, "en"), QString("July 31, 2025 at 5:00:00\u202FPM"));
    QCOMPARE(timeOfDay(instant, "ko"), QString("오후 5:00:00"));
    QCOMPARE(monthAndYear(instant, "en"), QString("July 2025"));
    // The offset is that of the date, not the current one.
    QCOMPARE(timeOfDay(Instant(sys_days(year(2025) / 1 / 1)) + hours(21), "en"),
             QString("4:00:00\u202FPM"));
  }

  void datesBefore1970Work() {
    using namespace std::chrono;
    const Instant instant = Instant(sys_days(year(1969) / 12 / 31)) - microseconds(1);
    QCOMPARE(isoDate(instant), QString("1969-12-30"));
    QCOMPARE(monthAndYear(instant, "en"), QString("December 1969"));
  }
};

QTEST_GUILESS_MAIN(DateFormatsTest)
#include "date_formats_test.moc"
