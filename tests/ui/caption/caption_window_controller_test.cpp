// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/caption_window_controller.h"

#include "language/localization.h"
#include "support/suite.h"
#include "ui/caption/caption_header_view.h"
#include "ui/caption/caption_notice.h"
#include "ui/caption/header_button.h"
#include "ui/caption/panel_frame.h"
#include "ui/caption/panel_stage.h"
#include "ui/common/window_frame.h"

#include <QScreen>
#include <QSignalSpy>

using namespace velun;
using test::PanelStage;
using namespace std::chrono_literals;

class CaptionWindowControllerTest final : public test::Suite {
  Q_OBJECT

 private:
  static QRect area() { return QGuiApplication::primaryScreen()->availableGeometry(); }

 private Q_SLOTS:
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

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
    QVERIFY(stage.view->notice().isVisible());
    QCOMPARE(stage.view->notice().text(), QString("The captions can be clicked again."));
  }

  void aPanelThatTakesClicksFromTheStartSaysNothing() {
    PanelStage stage;
    stage.desktop.setCapabilities({.passesClicks = true});
    stage.controller->show();
    QVERIFY(!stage.view->notice().isVisible());
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

  void movingShowsAHiddenPanel() {
    PanelStage stage;
    stage.controller->moveToNextPlace();
    QVERIFY(stage.controller->isShown());
  }

  void aHiddenPanelComesBackWithTheKeyboardInItsText() {
    PanelStage stage;
    stage.controller->show();
    stage.view->setHovering(true);
    stage.view->header().hideButton().setFocus();
    stage.controller->hide();
    QVERIFY(!stage.view->header().isAncestorOf(stage.panel().focusWidget()));
  }

  void movingAwayFromThePointerHidesTheHeader() {
    PanelStage stage;
    stage.controller->show();
    stage.view->setHovering(true);
    stage.desktop.isPointerOverWindow = true;
    QVERIFY(stage.controller->headerShown());
    stage.controller->moveToNextPlace();
    stage.clock.advance(2s);
    QVERIFY(stage.controller->headerShown());
    stage.desktop.isPointerOverWindow = false;
    stage.clock.advance(2s);
    QVERIFY(!stage.controller->headerShown());
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

  void panelStaysBehindAWindowWhenAnotherOpensBesideIt() {
    PanelStage stage;
    QWidget read;
    stage.showBeneath(read);
    QWidget opened;
    opened.setGeometry(QRect(stage.panel().geometry().topRight() + QPoint(20, 0), QSize(50, 50)));
    stage.controller->keepReadable(opened);
    opened.show();
    QCOMPARE(stage.desktop.calls, QStringList{"normal"});
    opened.hide();
    QCOMPARE(stage.desktop.calls, (QStringList{"normal", "floating"}));
  }

  void anotherLanguageLeavesTheOrderOfTheWindows() {
    PanelStage stage;
    QWidget window;
    stage.showBeneath(window);
    stage.desktop.calls.clear();
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(stage.desktop.calls, QStringList());
    QCOMPARE(stage.panel().windowTitle(), QString("Velun 자막"));
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
