// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/source_times.h"

#include "support/suite.h"

using namespace velun;

class SourceTimesTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void withoutAudioTimesStayAsTheyAre() { QCOMPARE(SourceTimes().at(3), 3.0); }

  void timesFollowTheSource() {
    SourceTimes times;
    times.add(0, 1, 101);
    times.add(1, 2, 102);
    // The source paused for ten seconds.
    times.add(2, 3, 113);
    QCOMPARE(times.at(0.5), 100.5);
    QCOMPARE(times.at(1.9), 101.9);
    QCOMPARE(times.at(2.0), 112.0);
    QCOMPARE(times.at(2.5), 112.5);
    QCOMPARE(times.at(4), 114.0);
  }

  void unevenDeliveryIsNoPause() {
    SourceTimes times;
    times.add(0, 1, 101);
    for (int i = 1; i < 100; ++i) times.add(i, i + 1, 101 + i + (i % 2 ? 0.02 : -0.02));
    QCOMPARE(times.at(50.5), 150.5);
  }

  void forgetsOnlyWhatIsLongAgo() {
    SourceTimes times;
    for (int i = 0; i < 2000; ++i) times.add(i, i + 1, 2 * i + 1);
    QCOMPARE(times.at(1999.5), 3998.5);
    QCOMPARE(times.at(1600.5), 3200.5);
  }
};

QTEST_GUILESS_MAIN(SourceTimesTest)
#include "source_times_test.moc"
