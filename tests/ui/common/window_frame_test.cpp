// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/window_frame.h"

#include "support/memory_preferences.h"
#include "support/suite.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

using namespace velun;

class WindowFrameTest final : public test::Suite {
  Q_OBJECT

  test::MemoryPreferences frames_;

 private Q_SLOTS:
  void frameIsStoredUnderItsName() {
    writeFrame(frames_, "A", QRect(-30, 40, 500, 300));
    QCOMPARE(frames_.get<QString>("A"), std::optional(QString("-30 40 500 300")));
    QCOMPARE(readFrame(frames_, "A"), std::optional(QRect(-30, 40, 500, 300)));
    QVERIFY(!readFrame(frames_, "B"));
  }

  void damagedFrameIsIgnored() {
    for (const char* damaged : {"", "1 2 3", "a b c d", "0 0 0 0", "1 2 -5 4"}) {
      frames_.set("A", QString(damaged));
      QVERIFY2(!readFrame(frames_, "A"), damaged);
    }
  }

  void framesMoveToTheScreenThatShowsMostOfThem() {
    const QList<QRect> screens = {QRect(0, 0, 1000, 800), QRect(1000, 0, 1000, 800)};
    QCOMPARE(movedIntoView(QRect(100, 100, 560, 250), screens), QRect(100, 100, 560, 250));
    QCOMPARE(movedIntoView(QRect(900, 700, 560, 250), screens), QRect(1000, 550, 560, 250));
    QCOMPARE(movedIntoView(QRect(-5000, 100, 560, 250), screens), QRect(0, 100, 560, 250));
    QCOMPARE(movedIntoView(QRect(0, 0, 5000, 5000), screens).size(), QSize(1000, 800));
  }

  void frameIsPlacedBesideAnotherOneNearTheMiddle() {
    const QRect area(0, 0, 1280, 800);
    const QRect panel(360, 490, 560, 250);
    QCOMPARE(placedBeside(panel, area, QSize(432, 345)), QRect(424, 137, 432, 345));
    // A panel at the top leaves room below it.
    QCOMPARE(placedBeside(panel.translated(0, -480), area, QSize(432, 345)),
             QRect(424, 268, 432, 345));
    // Too high for the room above, but not too wide for the room at the left.
    QCOMPARE(placedBeside(QRect(600, 490, 560, 250), area, QSize(432, 560)),
             QRect(160, 120, 432, 560));
    QCOMPARE(placedBeside(QRect(100, 490, 560, 250), area, QSize(432, 560)),
             QRect(668, 120, 432, 560));
    // Nowhere is room.
    QCOMPARE(placedBeside(panel, area, QSize(472, 790)), std::nullopt);
    QCOMPARE(centredIn(area, QSize(400, 200)), QRect(440, 300, 400, 200));
  }

  void restoredFrameIsOnAScreen() {
    QWidget window;
    window.setGeometry(20, 30, 300, 200);
    storeFrame(window, frames_, "W");
    window.setGeometry(0, 0, 10, 10);
    restoreFrame(window, frames_, "W");
    QCOMPARE(window.geometry(), QRect(20, 30, 300, 200));
    writeFrame(frames_, "W", QRect(9000, 9000, 300, 200));
    restoreFrame(window, frames_, "W");
    QVERIFY(QGuiApplication::primaryScreen()->availableGeometry().contains(window.geometry()));
  }
};

QTEST_MAIN(WindowFrameTest)
#include "window_frame_test.moc"
