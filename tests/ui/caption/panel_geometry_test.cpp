// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/panel_geometry.h"

#include "support/settle.h"
#include "support/suite.h"
#include "ui/caption/caption_header_view.h"
#include "ui/caption/panel_frame.h"
#include "ui/caption/panel_place.h"
#include "ui/caption/panel_stage.h"
#include "ui/common/window_frame.h"

#include <algorithm>
#include <qpa/qwindowsysteminterface.h>
#include <QScreen>

using namespace velun;
using test::PanelStage;
using namespace std::chrono_literals;

namespace {

/// Changes the screen as long as it exists.
class Resolution {
 public:
  explicit Resolution(const QRect& geometry)
      : screen_(QGuiApplication::primaryScreen()), before_(screen_->geometry()) {
    set(geometry);
  }
  ~Resolution() { set(before_); }
  Resolution(const Resolution&) = delete;
  Resolution& operator=(const Resolution&) = delete;
  QRect geometry() const { return screen_->geometry(); }

 private:
  void set(const QRect& geometry) {
    QWindowSystemInterface::handleScreenGeometryChange(screen_, geometry, geometry);
    QCoreApplication::processEvents();
  }

  QScreen* screen_;
  QRect before_;
};

}  // namespace

class PanelGeometryTest final : public test::Suite {
  Q_OBJECT

 private:
  static QRect area() { return QGuiApplication::primaryScreen()->availableGeometry(); }
  static int bottomOf(const PanelStage& stage) { return stage.panel().geometry().bottom(); }

 private Q_SLOTS:
  void defaultPositionWithoutAScreen() {
    // 60 points above the bottom of a screen of 900; y counts from the top.
    QCOMPARE(defaultPanelFrame(QRect()), QRect(440, 590, 560, 250));
  }

  void contentIsTallerThanThePanelByTheHeader() {
    PanelStage stage;
    QCOMPARE(stage.panel().contentHeight(), 294);
    QCOMPARE(stage.view->geometry(), QRect(0, -44, 560, 294));
    stage.controller->setHeader(true, false);
    QCOMPARE(stage.panel().contentHeight(), 294);
    QCOMPARE(stage.view->y(), 0);
    stage.controller->show();
    stage.panel().resize(600, 400);
    QCOMPARE(stage.panel().contentHeight(), 400);
  }

  void headerGrowsThePanelUpwardsOnce() {
    PanelStage stage;
    const int bottom = bottomOf(stage);
    stage.controller->setHeader(true, false);
    stage.controller->setHeader(true, false);
    QCOMPARE(stage.panel().height(), 294);
    QCOMPARE(bottomOf(stage), bottom);
    QCOMPARE(stage.panel().minimumHeight(), 234);
    stage.controller->setHeader(false, false);
    QCOMPARE(stage.panel().height(), 250);
    QCOMPARE(bottomOf(stage), bottom);
    QCOMPARE(stage.panel().minimumHeight(), 190);
  }

  void bottomStaysWhileTheHeaderMoves() {
    PanelStage stage;
    stage.animateHeader();
    stage.controller->show();
    const int bottom = bottomOf(stage);
    QList<int> heights;
    QObject::connect(&stage.panel(), &CaptionPanel::frameChanged, &stage.panel(), [&] {
      QCOMPARE(bottomOf(stage), bottom);
      QCOMPARE(stage.panel().contentHeight(), 294);
      heights << stage.panel().height();
    });
    // A busy machine may skip steps of the animation.
    while (heights.size() < 3) {
      stage.controller->setHeader(false, false);
      heights.clear();
      stage.controller->setHeader(true, true);
      QTRY_COMPARE(stage.panel().minimumHeight(), 234);
      QCOMPARE(stage.panel().height(), 294);
    }
    QVERIFY(std::ranges::is_sorted(heights));
    stage.controller->setHeader(false, true);
    QTRY_VERIFY(stage.panel().height() < 294);
    stage.controller->setHeader(true, true);
    QTRY_COMPARE(stage.panel().height(), 294);
    QCOMPARE(bottomOf(stage), bottom);
  }

  void resizeWaitsForTheHeaderToHide() {
    const PanelStage stage;
    stage.animateHeader();
    stage.controller->show();
    stage.panel().resize(560, 300);
    stage.controller->setHeader(true, false);
    QCOMPARE(stage.panel().contentHeight(), 344);
    stage.controller->setHeader(false, true);
    stage.panel().resize(600, 320);
    QCOMPARE(stage.panel().contentHeight(), 344);
    // It is hidden at the end of the animation.
    QTRY_VERIFY(!stage.view->header().isVisible());
    QCOMPARE(stage.panel().height(), 300);
    QCOMPARE(stage.panel().contentHeight(), 344);
    stage.panel().resize(600, 320);
    QCOMPARE(stage.panel().contentHeight(), 364);
  }

  void panelWithoutRoomAboveKeepsItsBottom() {
    PanelStage stage;
    stage.panel().setGeometry(area().x() + 10, area().y() + 20, 560, 250);
    const int bottom = bottomOf(stage);
    stage.controller->setHeader(true, false);
    QCOMPARE(stage.panel().y(), area().y());
    QCOMPARE(bottomOf(stage), bottom);
    stage.controller->setHeader(false, false);
    QCOMPARE(stage.panel().geometry(), QRect(area().x() + 10, area().y() + 20, 560, 250));
  }

  void panelWithOnlyItsHeaderInViewReturnsWithoutIt() {
    PanelStage stage;
    stage.controller->show();
    stage.controller->setHeader(true, false);
    const int low = area().bottom() + 1 - 40;
    stage.panel().setGeometry(area().x() + 10, low, 560, 294);
    stage.controller->setHeader(false, false);
    QCOMPARE(stage.panel().geometry(), QRect(area().x() + 10, area().bottom() + 1 - 250, 560, 250));
    // A panel that is partly visible stays in place.
    const QRect half(area().x() + 10, area().bottom() + 1 - 100, 560, 250);
    stage.panel().setGeometry(half);
    stage.controller->setHeader(true, false);
    stage.controller->setHeader(false, false);
    QCOMPARE(stage.panel().geometry(), half);
  }

  void restoringThePositionAccountsForTheHeader() {
    PanelStage stage;
    stage.controller->show();
    stage.panel().setGeometry(20, 20, 700, 300);
    stage.controller->restorePosition();
    QTRY_COMPARE(stage.panel().geometry(), defaultPanelFrame(area()));
    stage.controller->setHeader(true, false);
    stage.panel().setGeometry(20, 60, 700, 300);
    stage.controller->restorePosition();
    QTRY_COMPARE(stage.panel().geometry(), defaultPanelFrame(area(), 44));
    QCOMPARE(stage.panel().height(), 294);
  }

  void frameIsStoredWithoutTheHeader() {
    test::MemoryPreferences frames;
    QRect frame;
    {
      PanelStage stage({}, nullptr, &frames);
      stage.controller->show();
      stage.panel().setGeometry(30, 200, 600, 260);
      frame = stage.panel().geometry();
      stage.controller->setHeader(true, false);
      stage.clock.advance(1s);
      QCOMPARE(stage.panel().height(), 304);
    }
    const PanelStage again({}, nullptr, &frames);
    QCOMPARE(again.panel().geometry(), frame);
    QVERIFY(!again.controller->headerShown());
  }

  void quittingUnderThePointerStoresTheFrameWithoutTheHeader() {
    test::MemoryPreferences frames;
    QRect frame;
    {
      const PanelStage stage({}, nullptr, &frames);
      stage.controller->show();
      frame = stage.panel().geometry();
      stage.view->setHovering(true);
      QCOMPARE(stage.panel().height(), frame.height() + 44);
      QVERIFY(QMetaObject::invokeMethod(qApp, "aboutToQuit"));
      QCOMPARE(stage.panel().geometry(), frame);
    }
    const PanelStage again({}, nullptr, &frames);
    QCOMPARE(again.panel().geometry(), frame);
    QVERIFY(!again.controller->headerShown());
  }

  void frameBelongsToTheArrangementOfScreens() {
    test::MemoryPreferences frames;
    writeFrame(frames, "CaptionPanel", QRect(10, 20, 560, 250));
    const QRect screen = QGuiApplication::primaryScreen()->geometry();
    const QString here = "CaptionPanel " + nameOfArrangement({screen});
    {
      PanelStage first({}, nullptr, &frames);
      QCOMPARE(first.panel().geometry(), QRect(10, 20, 560, 250));
      first.controller->show();
      first.panel().setGeometry(30, 40, 600, 250);
      first.clock.advance(1s);
    }
    QVERIFY(frames.values.contains(here));
    // Another arrangement was used meanwhile.
    writeFrame(frames, "CaptionPanel", QRect(50, 60, 560, 250));
    const PanelStage again({}, nullptr, &frames);
    QCOMPARE(again.panel().geometry(), QRect(30, 40, 600, 250));
  }

  void movesToTheNextOfNinePlacesWithItsHeader() {
    PanelStage stage;
    stage.controller->show();
    stage.desktop.dock = QMargins(0, 0, 0, 40);
    const QRect free = area() - stage.desktop.dock;
    stage.panel().setGeometry(framedAt(4, stage.panel().geometry(), free));
    stage.controller->setHeader(true, false);
    stage.controller->moveToNextPlace();
    QRect expected = framedAt(5, QRect(0, 0, 560, 250), free);
    QCOMPARE(stage.panel().geometry(), expected.adjusted(0, -44, 0, 0));
    stage.controller->setHeader(false, false);
    QCOMPARE(stage.panel().geometry(), expected);
    for (int step = 0; step < 3; ++step) stage.controller->moveToNextPlace();
    QCOMPARE(stage.panel().geometry().bottom(), free.bottom() - kPlaceGap);
    // At the top there is room for a part of the header only.
    stage.controller->setHeader(true, false);
    stage.controller->moveToNextPlace();
    QCOMPARE(stage.panel().geometry(),
             framedAt(0, QRect(0, 0, 560, 250), free).adjusted(0, -kPlaceGap, 0, 0));
  }

  void aDraggedPanelKeepsItsNewestLineOnTheScreen() {
    PanelStage stage;
    stage.controller->show();
    const QRect area = stage.panel().screen()->availableGeometry();
    stage.panel().move(area.left() + 100, area.bottom() - 30);
    Q_EMIT stage.panel().moved();
    QCOMPARE(stage.panel().geometry().bottom(), area.bottom());
    // At the sides it may hang over: its lines begin again.
    stage.panel().move(area.left() - 150, area.top() + 100);
    Q_EMIT stage.panel().moved();
    QCOMPARE(stage.panel().x(), area.left() - 150);
  }

  void aDraggedPanelSnapsWithItsHeader() {
    PanelStage stage;
    stage.controller->show();
    stage.controller->setHeader(true, false);
    stage.panel().setGeometry(area().x() + 5, area().y() + 100, 560, 294);
    Q_EMIT stage.panel().moved();
    QCOMPARE(stage.panel().geometry(), QRect(area().x() + kPlaceGap, area().y() + 100, 560, 294));
    // The header is at the top of the screen.
    stage.panel().setGeometry(area().x() + 50, area().y() + 4, 560, 294);
    Q_EMIT stage.panel().moved();
    QCOMPARE(stage.panel().geometry(), QRect(area().x() + 50, area().y(), 560, 262));
    stage.controller->setHeader(false, false);
    QCOMPARE(stage.panel().geometry(), QRect(area().x() + 50, area().y() + kPlaceGap, 560, 250));
  }

  void frameOnNoScreenIsMovedOntoOne() {
    test::MemoryPreferences frames;
    writeFrame(frames, "CaptionPanel", QRect(9000, 9000, 560, 250));
    const PanelStage stage({}, nullptr, &frames);
    QVERIFY(area().contains(stage.panel().geometry()));
    QCOMPARE(stage.panel().size(), QSize(560, 250));
  }

  void managerThatMovesThePanelAfterTheScreensChangedIsCorrectedOnce() {
    test::MemoryPreferences frames;
    const Resolution wide({0, 0, 1000, 800});
    const QString here = "CaptionPanel " + nameOfArrangement({wide.geometry()});
    writeFrame(frames, here, QRect(400, 300, 560, 250));
    PanelStage stage({}, nullptr, &frames);
    stage.controller->show();
    {
      const Resolution narrow({0, 0, 800, 800});
      stage.clock.advance(3s);
    }
    test::settle();
    QCOMPARE(stage.panel().geometry(), QRect(400, 300, 560, 250));
    // What the manager does is not stored as the user's choice.
    stage.panel().move(20, 30);
    stage.clock.advance(900ms);
    QCOMPARE(stage.panel().pos(), QPoint(20, 30));
    stage.clock.advance(100ms);
    QCOMPARE(stage.panel().geometry(), QRect(400, 300, 560, 250));
    stage.clock.advance(1s);
    QCOMPARE(readPanelFrame(frames), QRect(400, 300, 560, 250));
    // Later it is moved for good.
    stage.panel().move(20, 30);
    stage.clock.advance(3s);
    QCOMPARE(readPanelFrame(frames), QRect(20, 30, 560, 250));
  }

  void panelThatWasNeverMovedReturnsWithItsScreens() {
    PanelStage stage;
    stage.controller->show();
    stage.clock.advance(3s);
    const QRect before = stage.panel().geometry();
    {
      const Resolution narrow({0, 0, 600, 500});
      stage.clock.advance(3s);
      QVERIFY(stage.panel().geometry() != before);
    }
    stage.clock.advance(3s);
    QCOMPARE(stage.panel().geometry(), before);
  }

  void panelThatIsDraggedAfterTheScreensChangedStays() {
    PanelStage stage;
    stage.controller->show();
    const Resolution wide({0, 0, 1000, 800});
    test::settle();
    stage.panel().move(200, 300);
    Q_EMIT stage.panel().moved();
    stage.clock.advance(3s);
    QCOMPARE(stage.panel().pos(), QPoint(200, 300));
    QCOMPARE(readPanelFrame(stage.frames), QRect(200, 300, 560, 250));
  }

  void panelOfARemovedScreenReturnsWhenShown() {
    PanelStage stage;
    stage.panel().setGeometry(-4000, 100, 560, 250);
    stage.controller->show();
    QVERIFY(area().contains(stage.panel().geometry()));
  }
};

QTEST_MAIN(PanelGeometryTest)
#include "panel_geometry_test.moc"
