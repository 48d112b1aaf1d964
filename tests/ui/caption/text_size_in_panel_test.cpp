// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/localization.h"
#include "support/suite.h"
#include "ui/caption/panel_stage.h"
#include "ui/caption/selectable_transcript_text_view.h"
#include "ui/caption/text_size_notice.h"
#include "ui/caption/transcript_view.h"

#include <private/qguiapplication_p.h>
#include <QAccessible>
#include <QApplication>
#include <QNativeGestureEvent>
#include <qpa/qplatformaccessibility.h>
#include <qpa/qplatformintegration.h>
#include <QPointingDevice>
#include <QWheelEvent>

using namespace velun;
using namespace std::chrono_literals;
using test::PanelStage;

namespace {

QWidget& viewport(const PanelStage& stage) {
  return *stage.view->transcript().textView().viewport();
}

void turnWheel(QWidget& over, int angle, Qt::KeyboardModifiers keys) {
  QWheelEvent event(QPointF(5, 5), over.mapToGlobal(QPointF(5, 5)), {}, QPoint(0, angle),
                    Qt::NoButton, keys, Qt::NoScrollPhase, false);
  QApplication::sendEvent(&over, &event);
}

void pinch(QWidget& over, Qt::NativeGestureType type, double value) {
  QNativeGestureEvent event(type, QPointingDevice::primaryPointingDevice(), 2, QPointF(5, 5),
                            QPointF(5, 5), over.mapToGlobal(QPointF(5, 5)), value, {});
  QApplication::sendEvent(&over, &event);
}

/// Names of the notifications that screen readers were told of.
QStringList& heard() {
  static QStringList names;
  return names;
}

void hear(QAccessibleEvent* event) {
  if (event->type() != QAccessible::ObjectShow) return;
  if (const QAccessibleInterface* shown = event->accessibleInterface()) {
    heard() << shown->text(QAccessible::Name);
  }
}

}  // namespace

/// The text size changed in the panel itself.
class TextSizeInPanelTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void controlAndWheelChangeTheSize() {
    PanelStage stage;
    turnWheel(viewport(stage), 120, Qt::ControlModifier);
    QCOMPARE(stage.settings.fontSize(), 18.0);
    turnWheel(viewport(stage), -240, Qt::ControlModifier);
    QCOMPARE(stage.settings.fontSize(), 14.0);
    turnWheel(viewport(stage), 120, Qt::NoModifier);
    QCOMPARE(stage.settings.fontSize(), 14.0);
  }

  void partsOfANotchAddUp() {
    PanelStage stage;
    for (int i = 0; i < 3; ++i) turnWheel(viewport(stage), 30, Qt::ControlModifier);
    QCOMPARE(stage.settings.fontSize(), 16.0);
    turnWheel(viewport(stage), 30, Qt::ControlModifier);
    QCOMPARE(stage.settings.fontSize(), 18.0);
    turnWheel(viewport(stage), 60, Qt::ControlModifier);
    turnWheel(viewport(stage), -60, Qt::ControlModifier);
    turnWheel(viewport(stage), -60, Qt::ControlModifier);
    QCOMPARE(stage.settings.fontSize(), 16.0);
  }

  void pinchingChangesTheSize() {
    PanelStage stage;
    pinch(viewport(stage), Qt::BeginNativeGesture, 0);
    for (int i = 0; i < 6; ++i) pinch(viewport(stage), Qt::ZoomNativeGesture, 0.05);
    QCOMPARE(stage.settings.fontSize(), 20.0);
    pinch(viewport(stage), Qt::EndNativeGesture, 0);
    pinch(viewport(stage), Qt::BeginNativeGesture, 0);
    for (int i = 0; i < 3; ++i) pinch(viewport(stage), Qt::ZoomNativeGesture, -0.05);
    QCOMPARE(stage.settings.fontSize(), 18.0);
  }

  void sizeIsShownForAMoment() {
    PanelStage stage;
    stage.panel().setAttribute(Qt::WA_DontShowOnScreen);
    stage.controller->show();
    const TextSizeNotice& notice = stage.view->sizeNotice();
    QVERIFY(!notice.isVisible());
    stage.settings.stepFontSize(1);
    QVERIFY(notice.isVisible());
    QCOMPARE(notice.text(), QString("18 pt"));
    QCOMPARE(notice.geometry().center(), stage.view->transcript().geometry().center());
    stage.clock.advance(1100ms);
    stage.settings.stepFontSize(1);
    stage.clock.advance(1100ms);
    QVERIFY(notice.isVisible());
    QCOMPARE(notice.text(), QString("20 pt"));
    stage.clock.advance(100ms);
    // It fades.
    QTRY_VERIFY(!notice.isVisible());
    Localization::shared().setLanguage(AppLanguage::korean);
    stage.settings.stepFontSize(1);
    QCOMPARE(notice.text(), QString("22포인트"));
    QCOMPARE(notice.accessibleName(), QString("글자 크기 22포인트"));
  }

  void screenReadersHearEverySize() {
    PanelStage stage;
    stage.controller->show();
    stage.panel().activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&stage.panel()));
    heard().clear();
    QPlatformAccessibility* reader = QGuiApplicationPrivate::platformIntegration()->accessibility();
    reader->setActive(true);
    auto* before = QAccessible::installUpdateHandler(hear);
    stage.settings.stepFontSize(1);
    stage.settings.stepFontSize(1);
    QAccessible::installUpdateHandler(before);
    reader->setActive(false);
    heard().removeIf([](const QString& name) { return !name.startsWith("Text size"); });
    QCOMPARE(heard(), QStringList({"Text size 18 points", "Text size 20 points"}));
  }
};

QTEST_MAIN(TextSizeInPanelTest)
#include "text_size_in_panel_test.moc"
