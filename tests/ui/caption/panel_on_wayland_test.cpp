// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/panel_stage.h"

#include <chrono>
#include <QMouseEvent>
#include <QTest>

using namespace velun;
using namespace velun::test;
using namespace std::chrono_literals;

namespace {

constexpr DesktopCapabilities kLayer = {.keepsOnTop = true,
                                        .allSpaces = true,
                                        .placesWindows = true,
                                        .hidesPlaces = true,
                                        .compositing = true};
constexpr DesktopCapabilities kOrdinary = {
    .keepsOnTop = true, .hidesPlaces = true, .compositing = true, .movesByItself = true};

}  // namespace

/// What the panel does where only the compositor knows the places of windows.
class PanelOnWaylandTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void aDragFollowsTheReportedMotion() {
    PanelStage stage;
    stage.desktop.setCapabilities(kLayer);
    stage.desktop.canFollow = true;
    stage.controller->show();
    CaptionPanel& panel = stage.panel();
    const QRect before = panel.geometry();
    panel.beginMove(QPoint(100, 100));
    QVERIFY(stage.desktop.isFollowing);
    QTest::mouseMove(&panel, QPoint(400, 20));
    QCOMPARE(panel.geometry(), before);
    Q_EMIT stage.desktop.pointerMoved(QPointF(-30.4, -20));
    QCOMPARE(panel.geometry(), before.translated(-30, -20));
    QCOMPARE(stage.desktop.frame, panel.geometry());
    Q_EMIT stage.desktop.pointerMoved(QPointF(-60, -40));
    QCOMPARE(panel.geometry(), before.translated(-60, -40));
    QTest::mouseRelease(&panel, Qt::LeftButton);
    QVERIFY(!stage.desktop.isFollowing);
    Q_EMIT stage.desktop.pointerMoved(QPointF(50, 50));
    QCOMPARE(panel.geometry(), before.translated(-60, -40));
  }

  void aPanelOfAnotherOutputIsShownAgain() {
    PanelStage stage;
    stage.desktop.setCapabilities(kLayer);
    stage.controller->show();
    stage.desktop.calls.clear();
    Q_EMIT stage.desktop.showAgainRequired();
    QVERIFY(stage.desktop.calls.contains("prepare floating"));
    QVERIFY(stage.panel().isVisible());
    stage.controller->hide();
    stage.desktop.calls.clear();
    Q_EMIT stage.desktop.showAgainRequired();
    QVERIFY(!stage.panel().isVisible());
    QCOMPARE(stage.desktop.calls, QStringList());
  }

  void itStaysAboveOwnWindowsWhosePlaceIsNotKnown() {
    PanelStage stage;
    stage.desktop.setCapabilities(kLayer);
    QWidget window;
    stage.showBeneath(window);
    QVERIFY(!stage.desktop.calls.contains("normal"));
  }

  void anOrdinaryWindowsFrameIsNeitherStoredNorKept() {
    MemoryPreferences frames;
    PanelStage stage({}, nullptr, &frames);
    stage.desktop.setCapabilities(kLayer);
    stage.desktop.changesLevelWhileShown = false;
    stage.controller->show();
    stage.panel().setGeometry(30, 200, 600, 260);
    stage.clock.advance(1s);
    const std::optional<QString> stored = frames.get<QString>("CaptionPanel");
    QCOMPARE(stored, QString("30 200 600 260"));

    stage.desktop.can = kOrdinary;
    stage.settings.setKeepOnTop(false);
    stage.panel().setGeometry(0, 0, 700, 500);  // as a tiling compositor does
    stage.clock.advance(1s);
    QCOMPARE(frames.get<QString>("CaptionPanel"), stored);

    stage.controller->setHeader(true, false);
    stage.desktop.can = kLayer;
    stage.settings.setKeepOnTop(true);
    QCOMPARE(stage.panel().geometry(), QRect(30, 200, 600, 260));
    stage.clock.advance(1s);
    QCOMPARE(frames.get<QString>("CaptionPanel"), stored);
  }
};

QTEST_MAIN(PanelOnWaylandTest)
#include "panel_on_wayland_test.moc"
