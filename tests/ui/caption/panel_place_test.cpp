// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/panel_place.h"

#include "support/suite.h"

#include <QSet>

using namespace velun;

class PanelPlaceTest final : public test::Suite {
  Q_OBJECT

 private:
  static constexpr QRect kArea{100, 30, 1000, 700};
  static constexpr QRect kFrame{300, 200, 560, 250};

 private Q_SLOTS:
  void ninePlacesAreInReadingOrder() {
    QCOMPARE(framedAt(0, kFrame, kArea), QRect(112, 42, 560, 250));
    QCOMPARE(framedAt(1, kFrame, kArea), QRect(320, 42, 560, 250));
    QCOMPARE(framedAt(2, kFrame, kArea), QRect(528, 42, 560, 250));
    QCOMPARE(framedAt(4, kFrame, kArea), QRect(320, 255, 560, 250));
    QCOMPARE(framedAt(8, kFrame, kArea), QRect(528, 468, 560, 250));
  }

  void everyPlaceIsVisitedOnce() {
    QRect frame = framedAt(0, kFrame, kArea);
    QSet<QString> seen;
    for (int step = 0; step < kPlaceCount; ++step) {
      seen << QString("%1 %2").arg(frame.x()).arg(frame.y());
      QVERIFY(kArea.contains(frame));
      frame = movedToNextPlace(frame, kArea);
    }
    QCOMPARE(seen.size(), 9);
    QCOMPARE(frame, framedAt(0, kFrame, kArea));
  }

  void aPanelAtNoPlaceMovesToTheNearest() {
    QCOMPARE(movedToNextPlace(QRect(330, 440, 560, 250), kArea), framedAt(7, kFrame, kArea));
  }

  void aPanelAsWideAsItsAreaMovesUpAndDown() {
    QRect frame(100, 42, 1000, 250);
    frame = movedToNextPlace(frame, kArea);
    QCOMPARE(frame, QRect(100, 255, 1000, 250));
    frame = movedToNextPlace(frame, kArea);
    QCOMPARE(frame, QRect(100, 468, 1000, 250));
    QCOMPARE(movedToNextPlace(frame, kArea), QRect(100, 42, 1000, 250));
    QCOMPARE(movedToNextPlace(kArea, kArea), kArea);
  }

  void aPanelLargerThanItsAreaIsMadeSmaller() {
    QCOMPARE(framedAt(0, QRect(0, 0, 3000, 2000), kArea), kArea);
  }

  void snapsToTheGapAndToTheCentre_data() {
    QTest::addColumn<QPoint>("from");
    QTest::addColumn<QPoint>("to");
    QTest::newRow("left edge") << QPoint(101, 150) << QPoint(112, 150);
    QTest::newRow("beyond the left edge") << QPoint(105, 150) << QPoint(112, 150);
    QTest::newRow("right edge") << QPoint(535, 150) << QPoint(528, 150);
    QTest::newRow("top and centre") << QPoint(315, 36) << QPoint(320, 42);
    QTest::newRow("middle") << QPoint(200, 262) << QPoint(200, 255);
    QTest::newRow("bottom") << QPoint(200, 479) << QPoint(200, 468);
    QTest::newRow("too far from all") << QPoint(200, 150) << QPoint(200, 150);
    QTest::newRow("12 points away") << QPoint(124, 150) << QPoint(124, 150);
  }
  void snapsToTheGapAndToTheCentre() {
    QFETCH(QPoint, from);
    QFETCH(QPoint, to);
    QCOMPARE(snapped(QRect(from, kFrame.size()), kArea), QRect(to, kFrame.size()));
  }

  void theNextScreenKeepsTheRelativePlace() {
    const QList<QRect> areas = {kArea, QRect(1100, 0, 1920, 1080)};
    const QRect lowerRight(540, 480, 560, 250);
    const QRect there = movedToNextArea(lowerRight, areas);
    QCOMPARE(there, QRect(3020 - 560, 1080 - 250, 560, 250));
    QCOMPARE(movedToNextArea(there, areas), lowerRight);
    QCOMPARE(movedToNextArea(kFrame, {kArea}), kFrame);
    QCOMPARE(movedToNextArea(kFrame, {}), kFrame);
  }

  void aSmallerScreenMakesThePanelSmaller() {
    const QRect small(2000, 0, 500, 200);
    QCOMPARE(movedToNextArea(kFrame, {kArea, small}), small);
  }

  void aFrameBelongsToTheAreaThatShowsMostOfIt() {
    const QRect right(1100, 0, 1000, 1000);
    QCOMPARE(areaOf(QRect(700, 100, 560, 250), {kArea, right}), kArea);
    QCOMPARE(areaOf(QRect(900, 100, 560, 250), {kArea, right}), right);
    QCOMPARE(areaOf(QRect(5000, 100, 560, 250), {kArea, right}), right);
    QCOMPARE(areaOf(kFrame, {}), QRect());
  }

  void anArrangementHasOneName() {
    const QRect left(0, 0, 1280, 800);
    const QRect right(1280, 0, 1920, 1080);
    QCOMPARE(nameOfArrangement({left, right}), QString("1280x800+0+0 1920x1080+1280+0"));
    QCOMPARE(nameOfArrangement({right, left}), nameOfArrangement({left, right}));
    QVERIFY(nameOfArrangement({left}) != nameOfArrangement({right}));
  }
};

QTEST_GUILESS_MAIN(PanelPlaceTest)
#include "panel_place_test.moc"
