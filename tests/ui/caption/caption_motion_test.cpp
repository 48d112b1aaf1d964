// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/suite.h"
#include "ui/caption/jump_button.h"
#include "ui/caption/level_meter.h"
#include "ui/caption/panel_stage.h"

#include <QApplication>
#include <QStyleFactory>
#include <QTimer>
#include <QVariantAnimation>

using namespace velun;
using test::PanelStage;

/// The timings of the panel's animations, which the test advances itself.
class CaptionMotionTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { QApplication::setStyle(QStyleFactory::create("Fusion")); }

  void headerGrowsFor220MillisecondsWithEasing() {
    const PanelStage stage;
    stage.animateHeader();
    stage.controller->show();
    auto* motion = stage.controller->findChild<QVariantAnimation*>();
    QVERIFY(motion);
    const QRect before = stage.panel().geometry();
    stage.controller->setHeader(true, true);
    QCOMPARE(motion->duration(), 220);
    const auto grownBy = [&](int milliseconds) {
      motion->setCurrentTime(milliseconds);
      [&] {
        QCOMPARE(stage.panel().geometry().bottom(), before.bottom());
      }();
      return stage.panel().height() - before.height();
    };
    QCOMPARE(grownBy(0), 0);
    const int early = grownBy(55);
    QVERIFY2(early > 0 && early < 11, "starts slowly");
    QCOMPARE(grownBy(110), 22);
    const int late = grownBy(165);
    QVERIFY2(late > 33 && late < 44, "ends slowly");
    QCOMPARE(grownBy(220), 44);
    QCOMPARE(motion->state(), QAbstractAnimation::Stopped);
    stage.controller->setHeader(false, true);
    QCOMPARE(motion->duration(), 220);
    QCOMPARE(grownBy(110), 22);
    QCOMPARE(grownBy(220), 0);
  }

  void jumpButtonFadesFor180MillisecondsWithEasing() {
    QWidget panel;
    JumpButton button(&panel);
    panel.show();
    auto* fade = button.findChild<QVariantAnimation*>();
    QVERIFY(fade);
    button.setWanted(true);
    QVERIFY(button.isVisible());
    QCOMPARE(fade->duration(), 180);
    const auto opacityAt = [fade](int milliseconds) {
      fade->setCurrentTime(milliseconds);
      return fade->currentValue().toDouble();
    };
    QCOMPARE(opacityAt(0), 0.0);
    QVERIFY2(opacityAt(45) < 0.25, "starts slowly");
    QCOMPARE(opacityAt(90), 0.5);
    QVERIFY2(opacityAt(135) > 0.75, "ends slowly");
    QCOMPARE(opacityAt(180), 1.0);
    button.setWanted(false);
    QVERIFY(button.isVisible());
    QCOMPARE(opacityAt(90), 0.5);
    QCOMPARE(opacityAt(0), 0.0);
    QVERIFY(!button.isVisible());
  }

  void meterIsDrawnAtMostThirtyTimesASecond() {
    int reads = 0;
    LevelMeter meter([&reads] {
      ++reads;
      return std::vector<float>(SpectrumBands::bandCount, -20);
    });
    const auto* timer = meter.findChild<QTimer*>();
    QVERIFY(timer);
    QCOMPARE(timer->interval(), 34);
    QVERIFY(1000.0 / timer->interval() <= 30);
    QVERIFY(!timer->isSingleShot());
    meter.setRunning(true);
    meter.show();
    QVERIFY(timer->isActive());
    QTRY_VERIFY(reads >= 2);
  }
};

QTEST_MAIN(CaptionMotionTest)
#include "caption_motion_test.moc"
