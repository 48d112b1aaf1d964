// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/level_meter.h"

#include "support/settle.h"
#include "support/suite.h"

#include <cmath>

using namespace velun;

class LevelMeterTest final : public test::Suite {
  Q_OBJECT

 private:
  static std::vector<float> all(float level) {
    return std::vector<float>(SpectrumBands::bandCount, level);
  }

 private Q_SLOTS:
  void silenceSettlesAtTheLowestPeak() {
    LevelMeterLevels levels;
    for (int i = 0; i < 100; ++i) levels.advance(all(-120));
    QCOMPARE(levels.peakDb().value(), -70.0F);
    for (const QRectF& bar : LevelMeter::bars(levels.heights(), QSizeF(72, 16))) {
      QCOMPARE(bar.height(), 2.0);
    }
  }

  void bandAtThePeakReachesItsShareOfTheHeight() {
    LevelMeterLevels levels;
    for (int i = 0; i < 500; ++i) levels.advance(all(-20));
    QCOMPARE(levels.peakDb().value(), -20.0F);
    QVERIFY(std::abs(levels.heights()[3] - 0.45) < 1e-6);
    QVERIFY(std::abs(LevelMeter::bars(levels.heights(), QSizeF(72, 16))[10].height() - 7.2) < 1e-4);
  }

  void peakDecaysSlowly() {
    LevelMeterLevels levels;
    levels.advance(all(-20));
    levels.advance(all(-60));
    QCOMPARE(levels.peakDb().value(), -20.15F);
    levels.advance({});
    QVERIFY(std::abs(levels.peakDb().value() + 20.3F) < 1e-4F);
    for (int i = 0; i < 1000; ++i) levels.advance({});
    QCOMPARE(levels.peakDb().value(), -70.0F);
    QVERIFY(levels.isSettled());
  }

  void barsRiseFasterThanTheyFall() {
    LevelMeterLevels levels;
    levels.advance(all(-20));
    QVERIFY(std::abs(levels.heights()[0] - 0.45 * 0.2) < 1e-9);
    const double risen = levels.heights()[0];
    levels.advance({});
    QVERIFY(std::abs(levels.heights()[0] - risen * 0.88) < 1e-9);
  }

  void scaleSpansFortyFiveDecibels() {
    LevelMeterLevels levels;
    std::vector<float> bands = all(-20);
    bands[1] = -42.5F;
    bands[2] = -65.0F;
    bands[3] = -90.0F;
    bands.resize(5);
    levels.advance(bands);
    QVERIFY(std::abs(levels.heights()[1] - 0.5 * 0.45 * 0.2) < 1e-6);
    QCOMPARE(levels.heights()[2], 0.0);
    QCOMPARE(levels.heights()[3], 0.0);
    QCOMPARE(levels.heights()[10], 0.0);
  }

  void barsAreMirroredAroundTheLowestBand() {
    LevelMeterLevels::Heights heights{};
    for (std::size_t i = 0; i < heights.size(); ++i) heights[i] = 0.2 + 0.02 * double(i);
    const std::vector<QRectF> bars = LevelMeter::bars(heights, QSizeF(72, 16));
    QCOMPARE(bars.size(), 21U);
    const double gap = (72.0 - 42.0) / 20.0;
    for (int j = 0; j <= 20; ++j) {
      const QRectF& bar = bars[static_cast<std::size_t>(j)];
      QCOMPARE(bar.x(), (gap + 2) * j);
      QCOMPARE(bar.width(), 2.0);
      QCOMPARE(bar.height(), 16 * heights[static_cast<std::size_t>(std::abs(j - 10))]);
      QCOMPARE(bar.center().y(), 8.0);
    }
    QCOMPARE(bars.back().right(), 72.0);
  }

  void paintsOnlyWhenABarChanges() {
    std::vector<float> bands;
    LevelMeter meter([&bands] { return bands; });
    meter.setRunning(true);
    meter.show();
    QVERIFY(QTest::qWaitForWindowExposed(&meter));
    meter.tick();
    test::settle();
    struct Paints final : QObject {
      bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint) ++count;
        return false;
      }
      int count = 0;
    } paints;
    meter.installEventFilter(&paints);
    for (int i = 0; i < 60; ++i) {
      meter.tick();
      test::settle();
    }
    QCOMPARE(paints.count, 0);
    bands = all(-30);
    meter.tick();
    QTRY_VERIFY(paints.count > 0);
  }

  void animatesOnlyWithSomethingToShow() {
    std::vector<float> bands;
    LevelMeter meter([&bands] { return bands; });
    QVERIFY(!meter.isMoving());
    bands = all(-65);
    meter.setRunning(true);
    QVERIFY2(!meter.isMoving(), "hidden");
    meter.show();
    QVERIFY(meter.isMoving());
    meter.tick();
    bands.clear();
    for (int i = 0; i < 400; ++i) meter.tick();
    QVERIFY2(meter.isMoving(), "sound may come at any time while captions run");
    bands = all(-30);
    for (int i = 0; i < 20; ++i) meter.tick();
    bands.clear();
    meter.setRunning(false);
    for (int i = 0; i < 3; ++i) meter.tick();
    QVERIFY2(meter.isMoving(), "the bars still fall");
    for (int i = 0; i < 300; ++i) meter.tick();
    QVERIFY(!meter.isMoving());
    bands = all(-30);
    meter.setRunning(true);
    QVERIFY(meter.isMoving());
    meter.hide();
    QVERIFY(!meter.isMoving());
  }
};

QTEST_MAIN(LevelMeterTest)
#include "level_meter_test.moc"
