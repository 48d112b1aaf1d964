// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/text_size.h"

#include "support/suite.h"

using namespace velun;

class TextSizeTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void stepsReachEverySizeInBothDirections() {
    std::vector<double> up = {kMinTextSize};
    while (up.back() < kMaxTextSize) {
      const double next = steppedTextSize(up.back(), 1);
      QVERIFY(next >= up.back() + 1);
      QVERIFY2(next <= up.back() * 1.17, qPrintable(QString::number(next)));
      QCOMPARE(steppedTextSize(next, -1), up.back());
      up.push_back(next);
    }
    QCOMPARE(steppedTextSize(kMinTextSize, static_cast<int>(up.size()) - 1), kMaxTextSize);
    QVERIFY(std::ranges::find(up, kDefaultTextSize) != up.end());
  }

  void aSizeBetweenTwoStepsMovesToTheNext() {
    QCOMPARE(steppedTextSize(17, 1), 18.0);
    QCOMPARE(steppedTextSize(17, -1), 16.0);
    QCOMPARE(steppedTextSize(17, 0), 17.0);
  }

  void sizesOutsideComeBack_data() {
    QTest::addColumn<double>("size");
    QTest::addColumn<int>("steps");
    QTest::addColumn<double>("expected");
    QTest::newRow("above, down") << 400.0 << -1 << 96.0;
    QTest::newRow("above, up") << 400.0 << 1 << 96.0;
    QTest::newRow("below, up") << 2.0 << 1 << 9.0;
    QTest::newRow("below, down") << 2.0 << -1 << 9.0;
    QTest::newRow("at the end") << 96.0 << 5 << 96.0;
    QTest::newRow("at the start") << 9.0 << -5 << 9.0;
  }
  void sizesOutsideComeBack() {
    QFETCH(double, size);
    QFETCH(int, steps);
    QFETCH(double, expected);
    QCOMPARE(steppedTextSize(size, steps), expected);
  }
};

QTEST_GUILESS_MAIN(TextSizeTest)
#include "text_size_test.moc"
