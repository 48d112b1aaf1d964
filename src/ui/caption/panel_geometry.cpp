// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/panel_geometry.h"

#include "platform/desktop/desktop_platform.h"
#include "settings/app_settings.h"
#include "ui/caption/caption_appearance.h"
#include "ui/caption/caption_panel.h"
#include "ui/caption/caption_view.h"
#include "ui/caption/motion.h"
#include "ui/caption/panel_frame.h"
#include "ui/caption/panel_place.h"
#include "ui/common/window_frame.h"

#include <algorithm>
#include <QGuiApplication>
#include <QScreen>
#include <utility>

namespace velun {

namespace {

constexpr std::chrono::milliseconds kStoreDelay{500};
constexpr std::chrono::milliseconds kSnapTime{120};
// Some window managers move windows only after they have told of a change of screens.
constexpr std::chrono::milliseconds kScreensSettleTime{1000};
// The part of the panel that must stay on the screen, in points.
constexpr int kMinInView = 16;

bool canBeReached(const QRect& frame, const QList<QRect>& areas) {
  return std::ranges::any_of(areas, [&frame](const QRect& area) {
    const QRect inView = area & frame;
    return inView.width() >= kMinInView && inView.height() >= kMinInView;
  });
}

}  // namespace

PanelGeometry::PanelGeometry(CaptionPanel& panel, CaptionView& view, const AppSettings& settings,
                             const DesktopPlatform& desktop, PreferenceStore& frames, Clock& clock,
                             QObject* parent)
    : QObject(parent),
      panel_(panel),
      view_(view),
      settings_(settings),
      desktop_(desktop),
      frames_(frames),
      clock_(clock),
      screens_(screenFrames()) {
  const std::optional<QRect> kept = readPanelFrame(frames);
  panel_.setGeometry(
      kept ? movedIntoView(*kept, areas())
           : defaultPanelFrame(areaOf(QGuiApplication::primaryScreen()->geometry(), areas())));
  resting_ = panel_.geometry();
  freeHeight_ = panel_.height();
  updateContentHeight();
  motion_.setEasingCurve(QEasingCurve::InOutCubic);
  connectToPanel();
  connectToScreens();
  connect(&settings, &AppSettings::captionLinesChanged, this, &PanelGeometry::applyLines);
  connect(&view, &CaptionView::linesHeightChanged, this, &PanelGeometry::applyLines);
  applyLines();
}

PanelGeometry::~PanelGeometry() {
  motion_.stop();
}

void PanelGeometry::connectToPanel() {
  connect(&panel_, &CaptionPanel::frameChanged, this, [this] {
    updateContentHeight();
    storeLater();
  });
  connect(&motion_, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
    if (animatingFrame_) panel_.setGeometry(value.toRect());
  });
  connect(&motion_, &QVariantAnimation::finished, this, &PanelGeometry::finishMotion);
  connect(&panel_, &CaptionPanel::moved, this, &PanelGeometry::snap);
  // A pointer that drags at once after it has come would fight with the header that it opens.
  connect(&panel_, &CaptionPanel::dragBegins, this, [this] {
    if (motion_.state() == QAbstractAnimation::Running) moveTo(settledFrame(), 0);
  });
  connect(qApp, &QCoreApplication::aboutToQuit, this, [this] {
    setHeader(false, false);
    store();
  });
}

void PanelGeometry::connectToScreens() {
  // Queued, because Qt still lists a removed screen during the signal.
  const auto follow = [this](QScreen* screen) {
    connect(screen, &QScreen::geometryChanged, this, &PanelGeometry::followScreens,
            Qt::QueuedConnection);
  };
  for (QScreen* screen : QGuiApplication::screens()) follow(screen);
  connect(qApp, &QGuiApplication::screenAdded, this, follow);
  connect(qApp, &QGuiApplication::screenAdded, this, &PanelGeometry::followScreens,
          Qt::QueuedConnection);
  connect(qApp, &QGuiApplication::screenRemoved, this, &PanelGeometry::followScreens,
          Qt::QueuedConnection);
}

QList<QRect> PanelGeometry::areas() const {
  QList<QRect> areas;
  for (const QScreen* screen : QGuiApplication::screens()) {
    areas << desktop_.availableArea(*screen);
  }
  return areas;
}

void PanelGeometry::followScreens() {
  const QList<QRect> now = screenFrames();
  if (now == screens_) return;
  if (!settling_) keepPanelFrame(frames_, resting_, screens_);
  screens_ = now;
  // The window manager may have moved the panel, or left only a corner of it visible.
  const QRect frame = readPanelFrame(frames_).value_or(frameWithoutHeader());
  const QRect wanted = movedIntoView(frame, areas());
  storing_.reset();
  place(wanted, 0);
  settling_ = clock_.callAfter(kScreensSettleTime, [this, wanted] { settle(wanted); });
}

void PanelGeometry::settle(const QRect& wanted) {
  settling_.reset();
  const bool isMoved = frameWithoutHeader().bottomLeft() != wanted.bottomLeft();
  if (isMoved && QGuiApplication::mouseButtons() == Qt::NoButton) place(wanted, 0);
  storeLater();
}

void PanelGeometry::updateContentHeight() {
  if (animatingHeader_) return;
  panel_.setContentHeight(panel_.height() + (headerShown_ ? 0 : CaptionAppearance::headerHeight));
}

QRect PanelGeometry::settledFrame() const {
  const bool moving = motion_.state() == QAbstractAnimation::Running;
  return moving ? motion_.endValue().toRect() : panel_.geometry();
}

void PanelGeometry::setHeader(bool visible, bool animated) {
  if (visible == headerShown_) return;
  headerShown_ = visible;
  QRect frame = settledFrame();
  if (visible) {
    growForHeader(frame);
    view_.setHeaderInSight(true);
  } else {
    panel_.setMinimumHeight(minimumHeight());
    frame.setTop(frame.top() + std::exchange(headerGrowth_, 0));
    // It may have been dragged to where only the header was visible.
    const QList<QRect> areas = this->areas();
    if (!canBeReached(frame, areas)) frame = movedIntoView(frame, areas);
  }
  panel_.setMaximumHeight(QWIDGETSIZE_MAX);
  animatingHeader_ = animated;
  moveTo(frame, animated ? motionTime(panel_, CaptionAppearance::headerDuration) : 0);
}

void PanelGeometry::growForHeader(QRect& frame) {
  headerGrowth_ = headerGrowthOver(frame);
  frame.setTop(frame.top() - headerGrowth_);
}

QRect PanelGeometry::frameWithoutHeader() const {
  QRect frame = settledFrame();
  frame.setTop(frame.top() + headerGrowth_);
  return frame;
}

void PanelGeometry::place(QRect frame, int milliseconds) {
  settling_.reset();
  if (hasLines()) frame.setTop(frame.bottom() + 1 - minimumHeight());
  panel_.setMaximumHeight(QWIDGETSIZE_MAX);
  panel_.setMinimumHeight(minimumHeight());
  if (headerShown_) growForHeader(frame);
  moveTo(frame, milliseconds);
}

void PanelGeometry::snap() {
  if (std::exchange(settling_, nullptr)) storeLater();
  const QRect frame = frameWithoutHeader();
  const QRect area = areaOf(frame, areas());
  QRect target = snapped(frame, area);
  // The header reaches the top before the captions do.
  if (headerGrowth_ > 0 && panel_.y() < area.top() + kPlaceGap) {
    target.moveTop(area.top() + kPlaceGap);
  }
  // The newest line is at the bottom; below the screen nobody would see it.
  if (target.bottom() > area.bottom()) target.moveBottom(area.bottom());
  if (target != frame) place(target, motionTime(panel_, kSnapTime));
}

void PanelGeometry::moveToDefaultPlace() {
  place(defaultPanelFrame(areaOf(panel_.geometry(), areas())),
        motionTime(panel_, CaptionAppearance::headerDuration));
}

void PanelGeometry::moveToNextPlace() {
  const QRect frame = frameWithoutHeader();
  place(movedToNextPlace(frame, areaOf(frame, areas())),
        motionTime(panel_, CaptionAppearance::headerDuration));
}

void PanelGeometry::moveToNextScreen() {
  place(movedToNextArea(frameWithoutHeader(), areas()), 0);
}

void PanelGeometry::returnToScreen() {
  const QList<QRect> areas = this->areas();
  const QRect frame = panel_.geometry();
  const auto holds = [&frame](const QRect& area) {
    return area.intersects(frame);
  };
  if (std::ranges::none_of(areas, holds)) panel_.setGeometry(movedIntoView(frame, areas));
}

bool PanelGeometry::headerWouldCover(const QPoint& point) const {
  const QRect frame = frameWithoutHeader();
  QRect grown = frame;
  const int growth = headerGrowthOver(frame);
  grown.setTop(frame.top() - growth);
  grown.setHeight(CaptionAppearance::headerHeight);
  return growth < CaptionAppearance::headerHeight && grown.contains(point);
}

int PanelGeometry::headerGrowthOver(const QRect& frame) const {
  // Limited to the room above: a window manager would otherwise push the whole panel down.
  const int room = frame.top() - areaOf(frame, areas()).top();
  return std::clamp(room, 0, CaptionAppearance::headerHeight);
}

void PanelGeometry::moveTo(const QRect& frame, int milliseconds) {
  animatingFrame_ = false;
  motion_.stop();
  if (milliseconds == 0 || !panel_.isVisible()) {
    panel_.setGeometry(frame);
    finishMotion();
    return;
  }
  motion_.setStartValue(panel_.geometry());
  motion_.setEndValue(frame);
  motion_.setDuration(milliseconds);
  animatingFrame_ = true;
  motion_.start();
}

void PanelGeometry::finishMotion() {
  animatingFrame_ = false;
  animatingHeader_ = false;
  if (!headerShown_) view_.setHeaderInSight(false);
  applyLines();
  limitHeight();
  updateContentHeight();
}

bool PanelGeometry::hasLines() const {
  return settings_.captionLines() > 0;
}

int PanelGeometry::minimumHeight() const {
  return hasLines() ? view_.linesHeight() : CaptionAppearance::minimumSize.height();
}

void PanelGeometry::limitHeight() {
  const int least = minimumHeight() + headerGrowth_;
  // In this order: a maximum below the minimum would lower it.
  panel_.setMaximumHeight(QWIDGETSIZE_MAX);
  panel_.setMinimumHeight(least);
  if (hasLines()) panel_.setMaximumHeight(least);
}

void PanelGeometry::applyLines() {
  // finishMotion() calls it again.
  if (animatingFrame_) return;
  const bool wasSized = std::exchange(isSizedByLines_, hasLines());
  if (!hasLines() && !wasSized) return;
  QRect frame = settledFrame();
  if (!wasSized) freeHeight_ = frame.height() - headerGrowth_;
  const int height = (hasLines() ? minimumHeight() : freeHeight_) + headerGrowth_;
  if (frame.height() == height && wasSized == hasLines()) return;
  frame.setTop(frame.bottom() + 1 - height);
  panel_.setMaximumHeight(QWIDGETSIZE_MAX);
  panel_.setMinimumHeight(std::min(panel_.minimumHeight(), height));
  panel_.setGeometry(frame);
  limitHeight();
  updateContentHeight();
}

void PanelGeometry::storeLater() {
  if (settling_) return;
  storing_ = clock_.callAfter(kStoreDelay, [this] { store(); });
}

void PanelGeometry::store() {
  storing_.reset();
  // The screens may have changed, and the panel may have been moved, before followScreens().
  if (settling_ || screenFrames() != screens_ || !panel_.hasPlace()) return;
  QRect frame = frameWithoutHeader();
  if (hasLines()) {
    frame.setTop(frame.bottom() + 1 - freeHeight_);
  } else {
    freeHeight_ = frame.height();
  }
  resting_ = frame;
  writePanelFrame(frames_, frame);
}

}  // namespace velun
