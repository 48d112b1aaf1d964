// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/panel_drag.h"

#include "support/suite.h"
#include "ui/caption/panel_edge.h"
#include "ui/caption/panel_stage.h"

#include <QMouseEvent>
#include <QVariantAnimation>

using namespace velun;
using test::PanelStage;
using namespace std::chrono_literals;

namespace {

/// The mouse on the panel's right edge.
class Mouse {
 public:
  explicit Mouse(const CaptionPanel& panel) {
    for (PanelEdge* edge : panel.findChildren<PanelEdge*>()) {
      if (edge->edges() == Qt::RightEdge) edge_ = edge;
    }
    position_ = edge_->mapToGlobal(edge_->rect().center());
  }

  void press() { send(QEvent::MouseButtonPress, Qt::LeftButton); }
  void moveBy(int x) {
    position_.rx() += x;
    send(QEvent::MouseMove, Qt::LeftButton);
  }
  void release() { send(QEvent::MouseButtonRelease, Qt::NoButton); }

 private:
  void send(QEvent::Type type, Qt::MouseButtons buttons) {
    QMouseEvent event(type, edge_->mapFromGlobal(position_), position_, Qt::LeftButton, buttons,
                      Qt::NoModifier);
    QCoreApplication::sendEvent(edge_, &event);
  }

  PanelEdge* edge_ = nullptr;
  QPointF position_;
};

}  // namespace

/// Dragging an edge while the header comes and goes.
class PanelDragTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void anEdgeIsDraggedWhileTheHeaderOpens() {
    const PanelStage stage;
    stage.animateHeader();
    stage.controller->show();
    const QRect before = stage.panel().geometry();
    auto* motion = stage.controller->findChild<QVariantAnimation*>();
    stage.controller->setHeader(true, true);
    motion->setCurrentTime(20);
    Mouse mouse(stage.panel());
    mouse.press();
    mouse.moveBy(90);
    motion->setCurrentTime(motion->duration());
    mouse.release();
    QCOMPARE(stage.panel().geometry(), before.adjusted(0, -44, 90, 0));
    stage.controller->setHeader(false, false);
    QCOMPARE(stage.panel().geometry(), before.adjusted(0, 0, 90, 0));
  }

  void theHeaderStaysWhileAnEdgeIsDragged() {
    PanelStage stage;
    stage.controller->show();
    const QRect before = stage.panel().geometry();
    stage.view->setHovering(true);
    Mouse mouse(stage.panel());
    mouse.press();
    // The panel is not where the pointer is yet.
    stage.view->setHovering(false);
    stage.clock.advance(2s);
    mouse.moveBy(90);
    QCOMPARE(stage.panel().geometry(), before.adjusted(0, -44, 90, 0));
    mouse.release();
    stage.clock.advance(2s);
    QCOMPARE(stage.panel().geometry(), before.adjusted(0, 0, 90, 0));
  }
};

QTEST_MAIN(PanelDragTest)
#include "panel_drag_test.moc"
