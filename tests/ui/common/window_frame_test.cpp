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

  void restoredFrameIsOnAScreen() {
    QWidget window;
    window.setGeometry(20, 30, 300, 200);
    storeFrame(window, &frames_, "W");
    window.setGeometry(0, 0, 10, 10);
    restoreFrame(window, &frames_, "W");
    QCOMPARE(window.geometry(), QRect(20, 30, 300, 200));
    writeFrame(frames_, "W", QRect(9000, 9000, 300, 200));
    restoreFrame(window, &frames_, "W");
    QVERIFY(QGuiApplication::primaryScreen()->availableGeometry().contains(window.geometry()));
    const QRect before = window.geometry();
    storeFrame(window, nullptr, "W");
    restoreFrame(window, nullptr, "W");
    QCOMPARE(window.geometry(), before);
  }
};

QTEST_MAIN(WindowFrameTest)
#include "window_frame_test.moc"
