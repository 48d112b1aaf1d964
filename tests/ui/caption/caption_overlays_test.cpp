// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/caption_overlays.h"

#include "language/localization.h"
#include "support/suite.h"
#include "ui/caption/caption_overlay_icon.h"
#include "ui/caption/copy_transcript_button.h"
#include "ui/caption/panel_stage.h"
#include "ui/caption/transcript_view.h"

#include <QApplication>
#include <QEnterEvent>

using namespace velun;
using test::PanelStage;
using test::settle;

class CaptionOverlaysTest final : public test::Suite {
  Q_OBJECT

 private:
  static void enter(QWidget& widget) {
    const QPointF middle = QRectF(widget.rect()).center();
    QEnterEvent event(middle, middle, widget.mapToGlobal(middle));
    QApplication::sendEvent(&widget, &event);
  }
  static void leave(QWidget& widget) {
    QEvent event(QEvent::Leave);
    QApplication::sendEvent(&widget, &event);
  }

 private Q_SLOTS:
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void appearWhileThePointerIsOverTheTranscript() {
    const PanelStage stage;
    stage.panel().setAttribute(Qt::WA_DontShowOnScreen);
    stage.controller->show();
    const CaptionOverlays& overlays = stage.view->overlays();
    QVERIFY(!overlays.isVisible());
    enter(stage.view->transcript());
    QVERIFY(overlays.isVisible());
    QVERIFY(overlays.copyButton().isVisible());
    QVERIFY(overlays.keptOnTop().isVisible());
    // In the upper trailing corner of the transcript.
    const QRect text = stage.view->transcript().geometry();
    QVERIFY(text.contains(overlays.geometry()));
    QVERIFY(overlays.geometry().center().x() > text.center().x());
    QVERIFY(overlays.geometry().center().y() < text.center().y());
    leave(stage.view->transcript());
    QVERIFY(!overlays.isVisible());
  }

  void stayWhileThePointerIsOverThem() {
    const PanelStage stage;
    stage.panel().setAttribute(Qt::WA_DontShowOnScreen);
    stage.controller->show();
    CaptionOverlays& overlays = stage.view->overlays();
    enter(stage.view->transcript());
    // Qt sets this state before it sends the events.
    overlays.setAttribute(Qt::WA_UnderMouse);
    leave(stage.view->transcript());
    enter(overlays);
    QVERIFY(overlays.isVisible());
    overlays.setAttribute(Qt::WA_UnderMouse, false);
    leave(overlays);
    QVERIFY(!overlays.isVisible());
  }

  void showTheWindowState() {
    PanelStage stage;
    const CaptionOverlays& overlays = stage.view->overlays();
    QVERIFY(!overlays.isVisibleTo(stage.view));
    QVERIFY(overlays.keptOnTop().isVisibleTo(&overlays));
    QVERIFY(!overlays.hiddenFromSharing().isVisibleTo(&overlays));
    stage.settings.setKeepOnTop(false);
    stage.settings.setHideFromScreenSharing(true);
    QVERIFY(!overlays.keptOnTop().isVisibleTo(&overlays));
    QVERIFY(overlays.hiddenFromSharing().isVisibleTo(&overlays));
    QCOMPARE(overlays.keptOnTop().size(), QSize(22, 22));
  }

  void thePinSaysWhenTheDesktopKeepsNoWindowAbove() {
    PanelStage stage;
    const CaptionOverlays& overlays = stage.view->overlays();
    QCOMPARE(overlays.keptOnTop().accessibleName(), QStringLiteral("Kept above other windows"));
    stage.desktop.setCapabilities({.keepsOnTop = false, .hidesPlaces = true});
    QCOMPARE(overlays.keptOnTop().accessibleName(),
             QStringLiteral("This desktop cannot keep the window above others"));
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(overlays.keptOnTop().accessibleName(),
             QStringLiteral("이 데스크톱에서는 이 창을 다른 창 위에 둘 수 없습니다"));
    stage.desktop.setCapabilities({.keepsOnTop = true, .hidesPlaces = true});
    QCOMPARE(overlays.keptOnTop().accessibleName(), QStringLiteral("다른 창 위에 표시 중"));
  }

  void hidingIconSaysWhatTheDesktopCanDoNow_data() {
    QTest::addColumn<CaptureHiding>("hiding");
    QTest::addColumn<bool>("readsWithoutCast");
    QTest::addColumn<QString>("symbol");
    QTest::addColumn<QString>("english");
    QTest::addColumn<QString>("korean");
    QTest::newRow("excluded by the compositor") << CaptureHiding::compositor << false << "eye.slash"
                                                << "Hidden from screen sharing"
                                                << "화면 공유에서 숨김";
    QTest::newRow("hidden while casting on Wayland")
        << CaptureHiding::whileCasting << false << "eye.slash"
        << "Hidden while the screen is shared"
        << "화면을 공유하는 동안 숨김";
    QTest::newRow("hidden while casting on X11") << CaptureHiding::whileCasting << true << "eye"
                                                 << "May be visible in screen sharing"
                                                 << "화면 공유에 보일 수 있음";
    for (const bool onX11 : {false, true}) {
      QTest::newRow(onX11 ? "nothing hides it on X11" : "nothing hides it on Wayland")
          << CaptureHiding::none << onX11 << "eye"
          << "Visible in screen sharing"
          << "화면 공유에 보임";
    }
  }
  void hidingIconSaysWhatTheDesktopCanDoNow() {
    QFETCH(CaptureHiding, hiding);
    QFETCH(bool, readsWithoutCast);
    QFETCH(QString, symbol);
    QFETCH(QString, english);
    QFETCH(QString, korean);
    PanelStage stage([](AppSettings& settings) { settings.setHideFromScreenSharing(true); });
    DesktopCapabilities can;
    can.captureHiding = hiding;
    can.readsWithoutCast = readsWithoutCast;
    stage.desktop.setCapabilities(can);
    const CaptionOverlayIcon& icon = stage.view->overlays().hiddenFromSharing();
    QCOMPARE(icon.symbol(), symbol);
    QCOMPARE(icon.toolTip(), english);
    QCOMPARE(icon.accessibleName(), english);
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(icon.toolTip(), korean);
  }
};

QTEST_MAIN(CaptionOverlaysTest)
#include "caption_overlays_test.moc"
