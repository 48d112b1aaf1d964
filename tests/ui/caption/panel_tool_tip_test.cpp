// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/panel_tool_tip.h"

#include "support/suite.h"
#include "ui/caption/caption_header_view.h"
#include "ui/caption/caption_menu.h"
#include "ui/caption/header_button.h"
#include "ui/caption/panel_stage.h"

#include <QApplication>
#include <QHelpEvent>
#include <QToolTip>

using namespace velun;
using test::PanelStage;

class PanelToolTipTest final : public test::Suite {
  Q_OBJECT

 private:
  static void pointAt(QWidget& widget, const QPoint& position) {
    QHelpEvent event(QEvent::ToolTip, position, widget.mapToGlobal(position));
    QApplication::sendEvent(&widget, &event);
  }
  static void pointAt(QWidget& widget) { pointAt(widget, widget.rect().center()); }

 private Q_SLOTS:
  void tipsOfThePanelAreInItsLook() {
    PanelStage stage;
    stage.controller->show();
    stage.controller->setHeader(true, false);
    auto* tip = stage.panel().findChild<PanelToolTip*>();
    QVERIFY(!tip->isVisible());
    HeaderButton& button = stage.view->header().hideButton();
    pointAt(button);
    QVERIFY(tip->isVisible());
    QVERIFY(!QToolTip::isVisible());
    QCOMPARE(tip->text(), button.toolTip());
    QVERIFY(tip->y() != button.mapToGlobal(button.rect().center()).y());
    const QImage image = tip->grab().toImage();
    QCOMPARE(image.pixelColor(4, image.height() / 2), CaptionColors().menu);
    QTest::mousePress(&button, Qt::LeftButton);
    QVERIFY(!tip->isVisible());
  }

  void tipsOfTheHeaderAreAboveThePanel() {
    PanelStage stage;
    stage.controller->show();
    stage.panel().move(100, 300);
    stage.controller->setHeader(true, false);
    auto* tip = stage.panel().findChild<PanelToolTip*>();
    pointAt(stage.view->header().hideButton());
    QVERIFY(tip->geometry().bottom() < stage.panel().geometry().top());
    // At the top of the screen they are below the pointer.
    stage.panel().move(100, 0);
    pointAt(stage.view->header().hideButton());
    QVERIFY(tip->geometry().top() > stage.panel().geometry().top());
  }

  void aTipIsAsWideAsItsText() {
    PanelStage stage;
    stage.controller->show();
    stage.controller->setHeader(true, false);
    auto* tip = stage.panel().findChild<PanelToolTip*>();
    HeaderButton& button = stage.view->header().session();
    button.setToolTip("Short");
    pointAt(button);
    const int width = tip->width();
    button.setToolTip("A text of some length that fits into one row");
    pointAt(button);
    QVERIFY(tip->width() > width);
    button.setToolTip("Short");
    pointAt(button);
    QCOMPARE(tip->width(), width);
    QEvent restyled(QEvent::StyleChange);
    QApplication::sendEvent(tip, &restyled);
    pointAt(button);
    QCOMPARE(tip->width(), width);
  }

  void aTipEndsWhenThePointerLeavesItsControl() {
    PanelStage stage;
    stage.controller->show();
    stage.controller->setHeader(true, false);
    auto* tip = stage.panel().findChild<PanelToolTip*>();
    HeaderButton& button = stage.view->header().session();
    pointAt(button);
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&stage.view->header().startStop(), &leave);
    QVERIFY(tip->isVisible());
    QApplication::sendEvent(&button, &leave);
    QVERIFY(!tip->isVisible());
  }

  void onlyMenuItemsWithATipOfTheirOwnHaveOne() {
    PanelStage stage;
    stage.controller->show();
    auto* tip = stage.panel().findChild<PanelToolTip*>();
    CaptionMenu menu(&stage.panel());
    QAction* plain = menu.addAction("&Plain");
    QAction* explained = menu.addAction("Explained");
    explained->setToolTip("Why it is so");
    menu.ensurePolished();
    menu.adjustSize();
    pointAt(menu, menu.actionGeometry(plain).center());
    QVERIFY(!tip->isVisible());
    pointAt(menu, menu.actionGeometry(explained).center());
    QVERIFY(tip->isVisible());
    QCOMPARE(tip->text(), QString("Why it is so"));
  }

  void aLongTipIsWrapped() {
    PanelStage stage;
    stage.controller->show();
    auto* tip = stage.panel().findChild<PanelToolTip*>();
    QWidget* view = stage.panel().findChild<CaptionView*>();
    view->setToolTip(QString("word ").repeated(60));
    pointAt(*view);
    QCOMPARE(tip->width(), 320);
    QVERIFY(tip->height() > 3 * tip->fontMetrics().height());
  }

  void otherWindowsKeepTheirTips() {
    PanelStage stage;
    stage.controller->show();
    QWidget other;
    other.setToolTip("Other");
    other.show();
    pointAt(other);
    QVERIFY(!stage.panel().findChild<PanelToolTip*>()->isVisible());
    QToolTip::hideText();
  }
};

QTEST_MAIN(PanelToolTipTest)
#include "panel_tool_tip_test.moc"
