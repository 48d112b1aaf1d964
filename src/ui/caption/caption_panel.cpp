// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/caption_panel.h"

#include "platform/desktop/desktop_platform.h"
#include "ui/caption/caption_appearance.h"
#include "ui/caption/panel_edge.h"
#include "ui/caption/panel_surface.h"
#include "ui/caption/panel_tool_tip.h"
#include "ui/common/accessible_role.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QShortcut>
#include <QWindow>
#include <utility>

namespace velun {

namespace {

QRegion roundedRegion(const QRect& rect, int corner) {
  QPainterPath path;
  path.addRoundedRect(rect, corner, corner);
  return QRegion(path.toFillPolygon().toPolygon());
}

}  // namespace

CaptionPanel::CaptionPanel(DesktopPlatform& desktop)
    : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint),
      desktop_(desktop),
      drag_(desktop),
      toolTip_(new PanelToolTip(this)) {
  setAccessibleRole(*this, QAccessible::Window);
  setAttribute(Qt::WA_TranslucentBackground);
  setAttribute(Qt::WA_ShowWithoutActivating);
  setAttribute(Qt::WA_QuitOnClose, false);
  // Tool tips must also work in this window, which is rarely active.
  setAttribute(Qt::WA_AlwaysShowToolTips);
  setMinimumSize(CaptionAppearance::minimumSize);
  addEdges();
  const auto* closing = new QShortcut(QKeySequence::Close, this);
  connect(closing, &QShortcut::activated, this, &QWidget::close);
  toolTip_->setRounded(desktop.capabilities().compositing);
  connect(&desktop, &DesktopPlatform::capabilitiesChanged, this, [this] {
    toolTip_->setRounded(desktop_.capabilities().compositing);
    updateRegions();
    update();
  });
  connect(&desktop, &DesktopPlatform::pointerMoved, this,
          [this](const QPointF& by) { drag_.followBy(*this, by); });
  connect(&desktop, &DesktopPlatform::showAgainRequired, this, [this] {
    if (!isVisible()) return;
    hide();
    orderFront(keepsOnTop_);
  });
}

void CaptionPanel::addEdges() {
  constexpr std::array<Qt::Edges, 8> all = {
      Qt::LeftEdge,
      Qt::TopEdge,
      Qt::RightEdge,
      Qt::BottomEdge,
      Qt::LeftEdge | Qt::TopEdge,
      Qt::RightEdge | Qt::TopEdge,
      Qt::LeftEdge | Qt::BottomEdge,
      Qt::RightEdge | Qt::BottomEdge,
  };
  for (std::size_t i = 0; i < all.size(); ++i) {
    edges_[i] = new PanelEdge(all[i], this);
    connect(edges_[i], &PanelEdge::pressed, this, &CaptionPanel::beginDrag);
    connect(edges_[i], &PanelEdge::moved, this,
            [this](const QPoint& position) { drag_.follow(*this, position); });
    connect(edges_[i], &PanelEdge::released, this, &CaptionPanel::endDrag);
  }
}

void CaptionPanel::setContent(QWidget* content) {
  content_ = content;
  content_->setParent(this);
  // Otherwise the first control gets the focus with the window.
  content_->setFocus();
  arrange();
  content_->show();
}

void CaptionPanel::setContentHeight(int height) {
  contentHeight_ = height;
  arrange();
}

void CaptionPanel::setLook(const PanelStyle& style, const CaptionColors& colors, bool opaque) {
  style_ = style;
  colors_ = colors;
  opaque_ = opaque;
  toolTip_->setColors(colors);
  updateRegions();
  update();
}

void CaptionPanel::arrange() {
  if (content_) content_->setGeometry(0, height() - contentHeight_, width(), contentHeight_);
  for (PanelEdge* edge : edges_) {
    edge->place();
    edge->raise();
  }
}

void CaptionPanel::orderFront(bool keepOnTop) {
  keepsOnTop_ = keepOnTop;
  if (!isVisible()) {
    winId();
    windowHandle()->installEventFilter(this);
    desktop_.prepareToShow(*windowHandle(), keepOnTop);
    restorePlace();
    if (isClickThrough_) desktop_.setClickThrough(*windowHandle(), true);
    updateRegions();
    show();
    desktop_.confirmShown(*windowHandle(), keepOnTop);
  }
  raise();
}

void CaptionPanel::restorePlace() {
  if (!hasPlace()) {
    if (!place_) place_ = geometry();
  } else if (place_) {
    setGeometry(*std::exchange(place_, std::nullopt));
  }
}

bool CaptionPanel::hasPlace() const {
  const DesktopCapabilities& can = desktop_.capabilities();
  return can.placesWindows || !can.hidesPlaces;
}

void CaptionPanel::setKeepOnTop(bool keepOnTop) {
  keepsOnTop_ = keepOnTop;
  if (!isVisible() || desktop_.setKeepOnTop(*windowHandle(), keepOnTop)) return;
  hide();
  orderFront(keepOnTop);
}

void CaptionPanel::setClickThrough(bool isThrough) {
  if (std::exchange(isClickThrough_, isThrough) == isThrough || !windowHandle()) return;
  desktop_.setClickThrough(*windowHandle(), isThrough);
}

void CaptionPanel::updateRegions() {
  if (!windowHandle()) return;
  const DesktopCapabilities& can = desktop_.capabilities();
  const QRegion rounded = roundedRegion(rect(), style_.corner);
  if (can.blursBehind) {
    desktop_.setBlurBehind(*windowHandle(), fill().alpha() == 0 ? QRegion() : rounded);
  }
  desktop_.setShape(*windowHandle(), can.compositing ? QRegion() : rounded);
}

QColor CaptionPanel::fill() const {
  const DesktopCapabilities& can = desktop_.capabilities();
  QColor fill = panelFill(style_, can.blursBehind);
  if (!can.compositing || opaque_) fill.setAlpha(255);
  return fill;
}

void CaptionPanel::beginMove(const QPoint& globalPosition) {
  beginDrag({}, globalPosition);
}

void CaptionPanel::beginDrag(Qt::Edges edges, const QPoint& globalPosition) {
  Q_EMIT dragBegins();
  drag_.begin(*this, edges, globalPosition);
}

bool CaptionPanel::event(QEvent* event) {
  if (event->type() == QEvent::Enter) {
    Q_EMIT hoveringChanged(true);
    // The window manager holds the pointer while it moves the panel.
    if (drag_.isByManager()) endDrag();
  }
  // A window that is hidden under the pointer gets no leave event.
  if (event->type() == QEvent::Leave || event->type() == QEvent::Hide) {
    Q_EMIT hoveringChanged(false);
  }
  return QWidget::event(event);
}

bool CaptionPanel::eventFilter(QObject* watched, QEvent* event) {
  if (watched == windowHandle() && event->type() == QEvent::Expose) {
    const bool isExposed = windowHandle()->isExposed();
    const bool appears = !std::exchange(wasExposed_, isExposed) && isExposed;
    // Again, because some window managers miss a request made before they show the window.
    if (appears && isClickThrough_) desktop_.setClickThrough(*windowHandle(), true);
  }
  return QWidget::eventFilter(watched, event);
}

void CaptionPanel::closeEvent(QCloseEvent* event) {
  QWidget::closeEvent(event);
  Q_EMIT closed();
}

void CaptionPanel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setCompositionMode(QPainter::CompositionMode_Source);
  painter.fillRect(rect(), Qt::transparent);
  painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
  painter.setRenderHint(QPainter::Antialiasing);
  paintPanelSurface(painter, rect(), style_.corner, fill(), colors_.edge);
}

void CaptionPanel::resizeEvent(QResizeEvent*) {
  tellFrame();
  Q_EMIT frameChanged();
  arrange();
  updateRegions();
}

void CaptionPanel::moveEvent(QMoveEvent*) {
  tellFrame();
  Q_EMIT frameChanged();
}

void CaptionPanel::tellFrame() {
  if (windowHandle()) desktop_.setFrame(*windowHandle(), geometry());
}

void CaptionPanel::mouseMoveEvent(QMouseEvent* event) {
  drag_.follow(*this, event->globalPosition().toPoint());
}

void CaptionPanel::mouseReleaseEvent(QMouseEvent*) {
  endDrag();
}

void CaptionPanel::endDrag() {
  if (drag_.end(*this)) Q_EMIT moved();
}

}  // namespace velun
