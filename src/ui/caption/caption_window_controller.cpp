// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/caption_window_controller.h"

#include "captions/caption_view_model.h"
#include "language/localization.h"
#include "platform/desktop/desktop_platform.h"
#include "ui/caption/caption_appearance.h"
#include "ui/caption/caption_header_view.h"
#include "ui/caption/caption_menu.h"
#include "ui/caption/caption_notice.h"
#include "ui/caption/caption_panel.h"
#include "ui/caption/caption_view.h"
#include "ui/caption/motion.h"
#include "ui/caption/panel_frame.h"
#include "ui/caption/panel_place.h"
#include "ui/caption/panel_surface.h"
#include "ui/common/window_frame.h"

#include <algorithm>
#include <QApplication>
#include <QScreen>
#include <QVariantAnimation>
#include <utility>

namespace velun {

namespace {

constexpr std::chrono::milliseconds kStoreDelay{500};
constexpr std::chrono::milliseconds kSnapTime{120};
// The part of the panel that must stay on the screen, in points.
constexpr int kMinInView = 16;

bool canBeReached(const QRect& frame, const QList<QRect>& areas) {
  return std::ranges::any_of(areas, [&frame](const QRect& area) {
    const QRect inView = area & frame;
    return inView.width() >= kMinInView && inView.height() >= kMinInView;
  });
}

QList<QRect> screenFrames() {
  QList<QRect> frames;
  for (const QScreen* screen : QGuiApplication::screens()) frames << screen->geometry();
  return frames;
}

}  // namespace

CaptionWindowController::CaptionWindowController(CaptionViewModel& model, AppCommands& commands,
                                                 const CaptionWindowServices& services)
    : model_(model), services_(services) {
  panel_ = std::make_unique<CaptionPanel>(services.desktop);
  ownWindows_ = std::make_unique<OwnWindows>(*panel_);
  view_ = new CaptionView(
      model, commands, services.translation, services.clock,
      CaptionChrome::Panel{.setHeaderVisible = [this](bool visible) { setHeader(visible, true); },
                           .isPointerInside =
                               [this] {
                                 return panel_->isVisible() &&
                                        services_.desktop.isPointerOver(*panel_->windowHandle());
                               },
                           .wouldCoverPointer =
                               [this] {
                                 return wouldCover(QCursor::pos());
                               }},
      services.betterCaptions, services.smallerRecognizer);
  if (services.audio) view_->header().offerPrograms(*services.audio);
  panel_->setContent(view_);
  const std::optional<QRect> kept = readPanelFrame(services.frames);
  screens_ = screenFrames();
  panel_->setGeometry(
      kept ? movedIntoView(*kept, areas())
           : defaultPanelFrame(areaOf(QApplication::primaryScreen()->geometry(), areas())));
  freeHeight_ = panel_->height();
  updateContentHeight();
  motion_.setEasingCurve(QEasingCurve::InOutCubic);
  connectToPanel();
  connectToSettings();
  applyLook();
  applyClickThrough();
  present();
  applyLines();
}

CaptionWindowController::~CaptionWindowController() {
  motion_.stop();
}

void CaptionWindowController::connectToPanel() {
  connect(panel_.get(), &CaptionPanel::hoveringChanged, view_, &CaptionView::setHovering);
  connect(panel_.get(), &CaptionPanel::closed, this, &CaptionWindowController::hide);
  connect(&view_->header(), &CaptionHeaderView::dragRequested, panel_.get(),
          &CaptionPanel::beginMove);
  connect(ownWindows_.get(), &OwnWindows::frontChanged, this, &CaptionWindowController::applyLevel);
  connect(panel_.get(), &CaptionPanel::frameChanged, this, [this] {
    applyLevel();
    updateContentHeight();
    storeFrameLater();
  });
  connect(&motion_, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
    if (animatingFrame_) panel_->setGeometry(value.toRect());
  });
  connect(&motion_, &QVariantAnimation::finished, this, &CaptionWindowController::finishMotion);
  connect(panel_.get(), &CaptionPanel::moved, this, &CaptionWindowController::snap);
  connectToScreens();
  connect(qApp, &QCoreApplication::aboutToQuit, this, [this] {
    setHeader(false, false);
    storeFrame();
  });
}

void CaptionWindowController::connectToScreens() {
  // Queued, because Qt still lists a removed screen during the signal.
  const auto follow = [this](QScreen* screen) {
    connect(screen, &QScreen::geometryChanged, this, &CaptionWindowController::followScreens,
            Qt::QueuedConnection);
  };
  for (QScreen* screen : QGuiApplication::screens()) follow(screen);
  connect(qApp, &QGuiApplication::screenAdded, this, follow);
  connect(qApp, &QGuiApplication::screenAdded, this, &CaptionWindowController::followScreens,
          Qt::QueuedConnection);
  connect(qApp, &QGuiApplication::screenRemoved, this, &CaptionWindowController::followScreens,
          Qt::QueuedConnection);
}

QList<QRect> CaptionWindowController::areas() const {
  QList<QRect> areas;
  for (const QScreen* screen : QGuiApplication::screens()) {
    areas << services_.desktop.availableArea(*screen);
  }
  return areas;
}

void CaptionWindowController::followScreens() {
  if (const QList<QRect> now = screenFrames(); std::exchange(screens_, now) == now) return;
  // The window manager may have moved the panel, or left only a corner of it visible.
  const QRect frame = readPanelFrame(services_.frames).value_or(frameWithoutHeader());
  place(movedIntoView(frame, areas()), 0);
}

void CaptionWindowController::connectToSettings() {
  const AppSettings& settings = model_.settings();
  connect(&settings, &AppSettings::keepOnTopChanged, this,
          &CaptionWindowController::applyPreferences);
  connect(&settings, &AppSettings::hideFromScreenSharingChanged, this,
          &CaptionWindowController::applyPreferences);
  connect(&settings, &AppSettings::clickThroughChanged, this,
          &CaptionWindowController::applyClickThrough);
  connect(&services_.desktop, &DesktopPlatform::capabilitiesChanged, this,
          &CaptionWindowController::applyClickThrough);
  connect(&services_.desktop, &DesktopPlatform::capabilitiesChanged, this,
          &CaptionWindowController::applyPreferences);
  connect(&services_.desktop, &DesktopPlatform::screenCastChanged, this,
          &CaptionWindowController::applyVisibility);
  connect(&services_.desktop, &DesktopPlatform::contrastChanged, this,
          &CaptionWindowController::applyLook);
  connect(&settings, &AppSettings::captionLinesChanged, this, &CaptionWindowController::applyLines);
  connect(view_, &CaptionView::linesHeightChanged, this, &CaptionWindowController::applyLines);
  connect(&settings, &AppSettings::panelStyleChanged, this, &CaptionWindowController::applyLook);
  connect(&settings, &AppSettings::followsHighContrastChanged, this,
          &CaptionWindowController::applyLook);
  connect(&Localization::shared(), &Localization::languageChanged, this,
          &CaptionWindowController::present);
}

void CaptionWindowController::present() {
  panel_->setWindowTitle(L("Velun Captions", "Velun 자막"));
  applyPreferences();
}

CaptionPanel& CaptionWindowController::panel() const {
  return *panel_;
}

bool CaptionWindowController::isSuppressed() const {
  return model_.settings().hideFromScreenSharing() &&
         services_.desktop.capabilities().captureHiding == CaptureHiding::whileCasting &&
         services_.desktop.isScreenCastRunning();
}

void CaptionWindowController::applyPreferences() {
  const DesktopCapabilities& can = services_.desktop.capabilities();
  const bool hides = model_.settings().hideFromScreenSharing();
  const bool keepsOnTop = this->keepsOnTop();
  const bool changes = std::exchange(wasKeptOnTop_, keepsOnTop) != keepsOnTop;
  // The panel may exchange its frame for another, without the header.
  if (changes && can.hidesPlaces) setHeader(false, false);
  panel_->setKeepOnTop(keepsOnTop);
  services_.desktop.watchScreenCasts(hides && can.captureHiding != CaptureHiding::compositor);
  if (panel_->windowHandle()) {
    services_.desktop.setExcludedFromCapture(*panel_->windowHandle(), hides);
  }
  view_->setCapabilities(can);
  applyVisibility();
}

bool CaptionWindowController::keepsOnTop() const {
  // Where the program's own windows lie is not known everywhere; there the user moves the panel.
  const bool isInTheWay =
      !services_.desktop.capabilities().hidesPlaces && ownWindows_->overlapPanel();
  return model_.settings().keepOnTop() && !isInTheWay;
}

void CaptionWindowController::applyLevel() {
  const bool keepsOnTop = this->keepsOnTop();
  if (std::exchange(wasKeptOnTop_, keepsOnTop) == keepsOnTop) return;
  panel_->setKeepOnTop(keepsOnTop);
  // A window manager puts a window that leaves the upper level in front of the ordinary ones.
  if (!keepsOnTop) ownWindows_->raiseFront();
}

void CaptionWindowController::applyLook() {
  const AppSettings& settings = model_.settings();
  const bool high = settings.followsHighContrast() && services_.desktop.prefersHighContrast();
  const PanelStyle& chosen = settings.panelStyle();
  const PanelStyle style = high ? highContrastStyle(chosen) : chosen;
  const CaptionColors colors = high ? CaptionColors::highContrast() : CaptionColors();
  panel_->setLook(style, colors, high);
  view_->setLook(style, colors);
}

void CaptionWindowController::applyVisibility() {
  const bool suppressed = isSuppressed();
  const bool visible = isShown_ && !suppressed;
  if (visible != panel_->isVisible()) {
    if (visible) {
      // Its screen may have been removed while it was hidden.
      const QList<QRect> areas = this->areas();
      const QRect frame = panel_->geometry();
      const auto holds = [&frame](const QRect& area) {
        return area.intersects(frame);
      };
      if (std::ranges::none_of(areas, holds)) panel_->setGeometry(movedIntoView(frame, areas));
      orderFront();
    } else {
      storeFrame();
      panel_->hide();
    }
  }
  if (std::exchange(wasSuppressed_, suppressed) != suppressed && isShown_) {
    Q_EMIT visibilityChanged();
  }
}

void CaptionWindowController::applyClickThrough() {
  const bool isThrough =
      model_.settings().clickThrough() && services_.desktop.capabilities().passesClicks;
  panel_->setClickThrough(isThrough);
  view_->setClickThrough(isThrough);
}

void CaptionWindowController::orderFront() {
  wasKeptOnTop_ = keepsOnTop();
  panel_->orderFront(wasKeptOnTop_);
  services_.desktop.setExcludedFromCapture(*panel_->windowHandle(),
                                           model_.settings().hideFromScreenSharing());
}

void CaptionWindowController::show() {
  const bool changed = !std::exchange(isShown_, true);
  if (panel_->isVisible()) orderFront();
  applyVisibility();
  if (changed) Q_EMIT visibilityChanged();
}

void CaptionWindowController::hide() {
  if (!std::exchange(isShown_, false)) return;
  applyVisibility();
  Q_EMIT visibilityChanged();
}

void CaptionWindowController::toggle() {
  isShown_ ? hide() : show();
}

std::unique_ptr<QMenu> CaptionWindowController::makeMenu() const {
  return view_->makeMenu();
}

void CaptionWindowController::updateContentHeight() {
  if (animatingHeader_) return;
  panel_->setContentHeight(panel_->height() + (headerShown_ ? 0 : CaptionAppearance::headerHeight));
}

QRect CaptionWindowController::settledFrame() const {
  const bool moving = motion_.state() == QAbstractAnimation::Running;
  return moving ? motion_.endValue().toRect() : panel_->geometry();
}

void CaptionWindowController::setHeader(bool visible, bool animated) {
  if (visible == headerShown_) return;
  headerShown_ = visible;
  QRect frame = settledFrame();
  if (visible) {
    growForHeader(frame);
    view_->setHeaderInSight(true);
  } else {
    panel_->setMinimumHeight(minimumHeight());
    frame.setTop(frame.top() + std::exchange(headerGrowth_, 0));
    // It may have been dragged to where only the header was visible.
    const QList<QRect> areas = this->areas();
    if (!canBeReached(frame, areas)) frame = movedIntoView(frame, areas);
  }
  panel_->setMaximumHeight(QWIDGETSIZE_MAX);
  animatingHeader_ = animated;
  moveTo(frame, animated ? motionTime(*panel_, CaptionAppearance::headerDuration) : 0);
}

void CaptionWindowController::growForHeader(QRect& frame) {
  headerGrowth_ = headerGrowthOver(frame);
  frame.setTop(frame.top() - headerGrowth_);
}

QRect CaptionWindowController::frameWithoutHeader() const {
  QRect frame = settledFrame();
  frame.setTop(frame.top() + headerGrowth_);
  return frame;
}

void CaptionWindowController::place(QRect frame, int milliseconds) {
  if (hasLines()) frame.setTop(frame.bottom() + 1 - minimumHeight());
  panel_->setMaximumHeight(QWIDGETSIZE_MAX);
  panel_->setMinimumHeight(minimumHeight());
  if (headerShown_) growForHeader(frame);
  moveTo(frame, milliseconds);
}

void CaptionWindowController::snap() {
  const QRect frame = frameWithoutHeader();
  const QRect area = areaOf(frame, areas());
  QRect target = snapped(frame, area);
  // The header reaches the top before the captions do.
  if (headerGrowth_ > 0 && panel_->y() < area.top() + kPlaceGap) {
    target.moveTop(area.top() + kPlaceGap);
  }
  if (target != frame) place(target, motionTime(*panel_, kSnapTime));
}

void CaptionWindowController::moveToNextPlace() {
  const QRect frame = frameWithoutHeader();
  place(movedToNextPlace(frame, areaOf(frame, areas())),
        motionTime(*panel_, CaptionAppearance::headerDuration));
  show();
}

void CaptionWindowController::moveToNextScreen() {
  place(movedToNextArea(frameWithoutHeader(), areas()), 0);
  show();
}

void CaptionWindowController::notify(const QString& text) {
  view_->notice().showText(text);
}

bool CaptionWindowController::wouldCover(const QPoint& point) const {
  const QRect frame = frameWithoutHeader();
  QRect grown = frame;
  const int growth = headerGrowthOver(frame);
  grown.setTop(frame.top() - growth);
  grown.setHeight(CaptionAppearance::headerHeight);
  return growth < CaptionAppearance::headerHeight && grown.contains(point);
}

int CaptionWindowController::headerGrowthOver(const QRect& frame) const {
  // Limited to the room above: a window manager would otherwise push the whole panel down.
  const int room = frame.top() - areaOf(frame, areas()).top();
  return std::clamp(room, 0, CaptionAppearance::headerHeight);
}

void CaptionWindowController::moveTo(const QRect& frame, int milliseconds) {
  animatingFrame_ = false;
  motion_.stop();
  if (milliseconds == 0 || !panel_->isVisible()) {
    panel_->setGeometry(frame);
    finishMotion();
    return;
  }
  motion_.setStartValue(panel_->geometry());
  motion_.setEndValue(frame);
  motion_.setDuration(milliseconds);
  animatingFrame_ = true;
  motion_.start();
}

void CaptionWindowController::finishMotion() {
  animatingFrame_ = false;
  animatingHeader_ = false;
  if (!headerShown_) view_->setHeaderInSight(false);
  applyLines();
  limitHeight();
  updateContentHeight();
}

bool CaptionWindowController::hasLines() const {
  return model_.settings().captionLines() > 0;
}

int CaptionWindowController::minimumHeight() const {
  return hasLines() ? view_->linesHeight() : CaptionAppearance::minimumSize.height();
}

void CaptionWindowController::limitHeight() {
  const int least = minimumHeight() + headerGrowth_;
  // In this order: a maximum below the minimum would lower it.
  panel_->setMaximumHeight(QWIDGETSIZE_MAX);
  panel_->setMinimumHeight(least);
  if (hasLines()) panel_->setMaximumHeight(least);
}

void CaptionWindowController::applyLines() {
  // finishMotion() calls it again.
  if (animatingFrame_) return;
  const bool wasSized = std::exchange(isSizedByLines_, hasLines());
  if (!hasLines() && !wasSized) return;
  QRect frame = settledFrame();
  if (!wasSized) freeHeight_ = frame.height() - headerGrowth_;
  const int height = (hasLines() ? minimumHeight() : freeHeight_) + headerGrowth_;
  if (frame.height() == height && wasSized == hasLines()) return;
  frame.setTop(frame.bottom() + 1 - height);
  panel_->setMaximumHeight(QWIDGETSIZE_MAX);
  panel_->setMinimumHeight(std::min(panel_->minimumHeight(), height));
  panel_->setGeometry(frame);
  limitHeight();
  updateContentHeight();
}

void CaptionWindowController::restorePosition() {
  place(defaultPanelFrame(areaOf(panel_->geometry(), areas())),
        motionTime(*panel_, CaptionAppearance::headerDuration));
  show();
}

void CaptionWindowController::storeFrameLater() {
  storing_ = services_.clock.callAfter(kStoreDelay, [this] { storeFrame(); });
}

void CaptionWindowController::storeFrame() {
  storing_.reset();
  if (!panel_->hasPlace()) return;
  QRect frame = frameWithoutHeader();
  if (hasLines()) {
    frame.setTop(frame.bottom() + 1 - freeHeight_);
  } else {
    freeHeight_ = frame.height();
  }
  writePanelFrame(services_.frames, frame);
}

}  // namespace velun
