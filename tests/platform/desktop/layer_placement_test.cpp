// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/layer_placement.h"

#include <QTest>

using namespace velun;

namespace {

constexpr QRect kLeft(0, 0, 1280, 800);
constexpr QRect kRight(1280, 0, 1920, 1080);
// Above and to the left of the others: its coordinates are negative.
constexpr QRect kUpper(-400, -600, 800, 600);

}  // namespace

class LayerPlacementTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void aWindowLiesOnTheOutputOfItsCentre_data() {
    QTest::addColumn<QRect>("window");
    QTest::addColumn<int>("output");
    QTest::newRow("inside") << QRect(300, 400, 560, 250) << 0;
    QTest::newRow("centre on the next one") << QRect(1010, 400, 560, 250) << 1;
    QTest::newRow("centre just before it") << QRect(990, 400, 560, 250) << 0;
    QTest::newRow("negative coordinates") << QRect(-300, -500, 200, 100) << 2;
    QTest::newRow("centre in no output, a part on the second") << QRect(2800, 900, 560, 400) << 1;
    QTest::newRow("on none, nearest the second") << QRect(4000, 300, 560, 250) << 1;
    QTest::newRow("on none, nearest the third") << QRect(-1500, -900, 560, 250) << 2;
  }

  void aWindowLiesOnTheOutputOfItsCentre() {
    QFETCH(const QRect, window);
    QFETCH(const int, output);
    QCOMPARE(outputFor(window, {kLeft, kRight, kUpper}), qsizetype{output});
  }

  void withoutOutputsThereIsNone() { QCOMPARE(outputFor(QRect(0, 0, 10, 10), {}), qsizetype{-1}); }

  void marginsCountFromTheOutputsCorner() {
    QCOMPARE(marginsOn(kRight, QRect(1380, 50, 560, 250)), QMargins(100, 50, 0, 0));
    QCOMPARE(marginsOn(kUpper, QRect(-300, -500, 200, 100)), QMargins(100, 100, 0, 0));
  }

  void marginsAreNegativeBeyondTheOutput() {
    QCOMPARE(marginsOn(kRight, QRect(1200, -20, 560, 250)), QMargins(-80, -20, 0, 0));
  }

  void aPopupIsPlacedRelativeToItsParent() {
    const QRect panel(1380, 400, 560, 250);
    QCOMPARE(relativeTo(panel, QRect(1700, 440, 200, 180)), QRect(320, 40, 200, 180));
    QCOMPARE(relativeTo(panel, QRect(1300, 380, 200, 180)), QRect(-80, -20, 200, 180));
  }
};

QTEST_GUILESS_MAIN(LayerPlacementTest)
#include "layer_placement_test.moc"
