// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/frame_keeper.h"

#include "support/memory_preferences.h"
#include "support/suite.h"
#include "ui/common/window_frame.h"

#include <QWidget>

using namespace velun;

class FrameKeeperTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void aWindowComesBackWhereItWas() {
    test::MemoryPreferences frames;
    {
      QWidget window;
      window.setObjectName("Window");
      new FrameKeeper(window, frames);
      QCOMPARE(frames.writes, 0);
      window.show();
      window.setGeometry(40, 50, 300, 200);
      window.hide();
    }
    QWidget again;
    again.setObjectName("Window");
    new FrameKeeper(again, frames);
    QCOMPARE(again.geometry(), QRect(40, 50, 300, 200));
    QWidget other;
    other.setObjectName("Other");
    const QRect before = other.geometry();
    new FrameKeeper(other, frames);
    QCOMPARE(other.geometry(), before);
  }

  void aWindowOfFixedSizeKeepsItsSize() {
    test::MemoryPreferences frames;
    writeFrame(frames, "Window", QRect(40, 50, 300, 200));
    QWidget window;
    window.setObjectName("Window");
    window.setFixedSize(120, 130);
    new FrameKeeper(window, frames);
    QCOMPARE(window.geometry(), QRect(40, 50, 120, 130));
  }
};

QTEST_MAIN(FrameKeeperTest)
#include "frame_keeper_test.moc"
