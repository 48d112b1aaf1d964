// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/caption_window_controller.h"

#include "language/localization.h"
#include "support/suite.h"
#include "ui/caption/caption_header_view.h"
#include "ui/caption/caption_notice.h"
#include "ui/caption/panel_frame.h"
#include "ui/caption/panel_place.h"
#include "ui/caption/panel_stage.h"
#include "ui/common/window_frame.h"

#include <QScreen>
#include <QSignalSpy>
#include <QWindow>

using namespace velun;
using test::PanelStage;
using test::settle;
using namespace std::chrono_literals;

class CaptionWindowControllerTest final : public test::Suite {
  Q_OBJECT

 private:
  static QRect area() { return QGuiApplication::primaryScreen()->availableGeometry(); }
  static int bottomOf(const PanelStage& stage) { return stage.panel().geometry().bottom(); }

 private Q_SLOTS:
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void defaultPositionWithoutAScreen() {
    // 60 points above the bottom of a screen of 900; y counts from the top.
    QCOMPARE(defaultPanelFrame(QRect()), QRect(440, 590, 560, 250));
  }

  void startsHiddenAtTheDefaultPosition() {
    PanelStage stage;
    QCOMPARE(stage.panel().geometry(), defaultPanelFrame(area()));
    QVERIFY(!stage.panel().isVisible());
    QVERIFY(!stage.controller->headerShown());
    QCOMPARE(stage.panel().windowTitle(), QString("Velun Captions"));
    QCOMPARE(stage.panel().minimumSize(), QSize(480, 190));
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(stage.panel().windowTitle(), QString("Velun 자막"));
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

  void clicksGoThroughWhereTheDesktopKnowsIt() {
    PanelStage stage;
    stage.controller->show();
    stage.settings.setClickThrough(true);
    QVERIFY(!stage.desktop.passesClicks);
    QVERIFY(!stage.view->notice().isVisible());
    stage.desktop.setCapabilities({.passesClicks = true});
    QVERIFY(stage.desktop.passesClicks);
    QVERIFY(stage.view->notice().isVisible());
    QVERIFY(stage.view->notice().text().contains("Start Velun once more"));
    stage.view->setHovering(true);
    QVERIFY(!stage.controller->headerShown());
    stage.clock.advance(4s);
    // It fades.
    QTRY_VERIFY(!stage.view->notice().isVisible());
    stage.settings.setClickThrough(false);
    QVERIFY(!stage.desktop.passesClicks);
    QVERIFY(stage.controller->headerShown());
  }

  void aPanelShownLaterLetsClicksThrough() {
    PanelStage stage([](AppSettings& settings) { settings.setClickThrough(true); });
    stage.desktop.setCapabilities({.passesClicks = true});
    stage.controller->show();
    QVERIFY(stage.desktop.passesClicks);
  }

  void restoringThePositionShowsAHiddenPanel() {
    PanelStage stage;
    stage.controller->restorePosition();
    QVERIFY(stage.panel().isVisible());
    QVERIFY(stage.controller->isShown());
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

  void movingShowsAHiddenPanel() {
    PanelStage stage;
    stage.controller->moveToNextPlace();
    QVERIFY(stage.controller->isShown());
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

  void panelOfARemovedScreenReturnsWhenShown() {
    PanelStage stage;
    stage.panel().setGeometry(-4000, 100, 560, 250);
    stage.controller->show();
    QVERIFY(area().contains(stage.panel().geometry()));
  }

  void hidingUnderThePointerHidesTheHeader() {
    PanelStage stage;
    stage.controller->show();
    stage.view->setHovering(true);
    QVERIFY(stage.controller->headerShown());
    stage.controller->hide();
    stage.clock.advance(2s);
    QVERIFY(!stage.controller->headerShown());
    QCOMPARE(stage.panel().height(), 250);
  }

  void preferencesApplyToTheOpenPanelAtOnce() {
    PanelStage stage;
    stage.controller->show();
    QCOMPARE(stage.desktop.calls.first(), QString("prepare floating"));
    QVERIFY(stage.desktop.calls.contains("confirm floating"));
    stage.desktop.calls.clear();
    stage.settings.setKeepOnTop(false);
    QVERIFY(stage.desktop.calls.contains("normal"));
    stage.desktop.calls.clear();
    stage.settings.setHideFromScreenSharing(true);
    QVERIFY(stage.desktop.calls.contains("excluded"));
    QVERIFY(stage.panel().isVisible());
    stage.desktop.calls.clear();
    stage.desktop.changesLevelWhileShown = false;
    stage.settings.setKeepOnTop(true);
    QVERIFY(stage.desktop.calls.contains("prepare floating"));
    QVERIFY(stage.panel().isVisible());
  }

  void screenCastHidesThePanel() {
    PanelStage stage([](AppSettings& settings) { settings.setHideFromScreenSharing(true); });
    DesktopCapabilities can;
    can.captureHiding = CaptureHiding::whileCasting;
    stage.desktop.setCapabilities(can);
    QVERIFY(stage.desktop.isWatching);
    stage.controller->show();
    QSignalSpy spy(stage.controller.get(), &CaptionWindowController::visibilityChanged);
    stage.desktop.setCasting(true);
    QVERIFY(!stage.panel().isVisible());
    QVERIFY(stage.controller->isShown());
    QVERIFY(stage.controller->isSuppressed());
    QCOMPARE(spy.count(), 1);
    // The panel can be shown and hidden, but stays off the screen during the cast.
    stage.controller->toggle();
    QVERIFY(!stage.controller->isShown());
    stage.controller->toggle();
    QVERIFY(stage.controller->isShown());
    stage.controller->restorePosition();
    QVERIFY(!stage.panel().isVisible());
    stage.desktop.setCasting(false);
    QVERIFY(stage.panel().isVisible());
    stage.desktop.setCasting(true);
    stage.settings.setHideFromScreenSharing(false);
    QVERIFY(stage.panel().isVisible());
    QVERIFY(!stage.desktop.isWatching);
  }

  void screenCastIsIgnoredWhereTheCompositorHidesThePanel() {
    PanelStage stage([](AppSettings& settings) { settings.setHideFromScreenSharing(true); });
    DesktopCapabilities can;
    can.captureHiding = CaptureHiding::compositor;
    stage.desktop.setCapabilities(can);
    stage.controller->show();
    stage.desktop.setCasting(true);
    QVERIFY(stage.panel().isVisible());
    QVERIFY(!stage.desktop.isWatching);
  }

  void panelYieldsToAnOwnWindowInFrontOfIt() {
    PanelStage stage;
    QWidget window;
    stage.showBeneath(window);
    QCOMPARE(stage.desktop.calls, QStringList{"normal"});
    // It overlaps no longer, then again.
    window.move(stage.panel().geometry().topRight() + QPoint(1, 0));
    QTRY_COMPARE(stage.desktop.calls, (QStringList{"normal", "floating"}));
    window.move(stage.panel().pos());
    QTRY_COMPARE(stage.desktop.calls.size(), 3);
    stage.settings.setKeepOnTop(false);
    stage.settings.setKeepOnTop(true);
    QVERIFY2(!stage.desktop.calls.mid(1 + 2).contains("floating"), "still in front");
    window.hide();
    QCOMPARE(stage.desktop.calls.back(), QString("floating"));
  }

  void headerFitsBelowAWindowThatWasPlacedAboveThePanel() {
    PanelStage stage;
    stage.controller->show();
    QWidget window;
    window.resize(200, 200);
    stage.controller->keepReadable(window);
    window.show();
    const QRect framed(window.pos(), window.size().grownBy(usualFrameMargins()));
    QVERIFY(framed.bottom() < stage.panel().y());
    stage.controller->setHeader(true, false);
    QCOMPARE(stage.panel().height(), 250 + 44);
    QVERIFY(framed.bottom() < stage.panel().y());
  }

  void panelThatMustBeShownAnewYieldsToo() {
    PanelStage stage;
    stage.desktop.changesLevelWhileShown = false;
    QWidget window;
    stage.showBeneath(window);
    QVERIFY(stage.panel().isVisible());
    QVERIFY(stage.desktop.calls.contains("prepare normal"));
    QVERIFY(!stage.desktop.calls.contains("prepare floating"));
    {
      QWidget closed;
      closed.setGeometry(stage.panel().geometry());
      stage.controller->keepReadable(closed);
      closed.show();
    }
    window.hide();
    QVERIFY(stage.panel().isVisible());
    QVERIFY(stage.desktop.calls.contains("prepare floating"));
  }

  void panelIsClippedWithoutACompositor() {
    PanelStage stage;
    stage.controller->show();
    QVERIFY(!stage.desktop.shape.isEmpty());
    QVERIFY(!stage.desktop.shape.contains(QPoint(0, 0)));
    QVERIFY(stage.desktop.shape.contains(QPoint(280, 125)));
    DesktopCapabilities can;
    can.compositing = true;
    can.blursBehind = true;
    stage.desktop.setCapabilities(can);
    QVERIFY(stage.desktop.shape.isEmpty());
    QVERIFY(!stage.desktop.blur.contains(QPoint(0, 0)));
    QVERIFY(stage.desktop.blur.contains(QPoint(280, 125)));
  }

  void closingThePanelDoesNotQuit() {
    const PanelStage stage;
    QVERIFY(!stage.panel().testAttribute(Qt::WA_QuitOnClose));
    QVERIFY(stage.panel().testAttribute(Qt::WA_ShowWithoutActivating));
    QVERIFY(!(stage.panel().windowFlags() & Qt::WindowDoesNotAcceptFocus));
  }
};

QTEST_MAIN(CaptionWindowControllerTest)
#include "caption_window_controller_test.moc"
