// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/caption_window_controller.h"

#include "captions/caption_view_model.h"
#include "language/localization.h"
#include "platform/desktop/desktop_platform.h"
#include "ui/caption/caption_header_view.h"
#include "ui/caption/caption_menu.h"
#include "ui/caption/caption_notice.h"
#include "ui/caption/caption_panel.h"
#include "ui/caption/caption_view.h"
#include "ui/caption/panel_geometry.h"
#include "ui/caption/panel_surface.h"

#include <QCursor>
#include <utility>

namespace velun {

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
                                        (panel_->isDragged() ||
                                         services_.desktop.isPointerOver(*panel_->windowHandle()));
                               },
                           .wouldCoverPointer =
                               [this] {
                                 return geometry_->headerWouldCover(QCursor::pos());
                               }},
      services.betterCaptions, services.smallerRecognizer);
  if (services.audio) view_->header().offerPrograms(*services.audio);
  panel_->setContent(view_);
  // The height of the lines depends on the look.
  applyLook();
  geometry_ = std::make_unique<PanelGeometry>(*panel_, *view_, model.settings(), services.desktop,
                                              services.frames, services.clock, this);
  connectToPanel();
  connectToSettings();
  applyClickThrough();
  present();
  applyPreferences();
}

CaptionWindowController::~CaptionWindowController() = default;

void CaptionWindowController::connectToPanel() {
  connect(panel_.get(), &CaptionPanel::hoveringChanged, view_, &CaptionView::setHovering);
  connect(view_, &CaptionView::speakerNaming, this, &CaptionWindowController::speakerNaming);
  connect(panel_.get(), &CaptionPanel::closed, this, &CaptionWindowController::hide);
  connect(&view_->header(), &CaptionHeaderView::dragRequested, panel_.get(),
          &CaptionPanel::beginMove);
  connect(ownWindows_.get(), &OwnWindows::frontChanged, this, &CaptionWindowController::applyLevel);
  connect(panel_.get(), &CaptionPanel::frameChanged, this, &CaptionWindowController::applyLevel);
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
  connect(&settings, &AppSettings::panelStyleChanged, this, &CaptionWindowController::applyLook);
  connect(&settings, &AppSettings::followsHighContrastChanged, this,
          &CaptionWindowController::applyLook);
  connect(&Localization::shared(), &Localization::languageChanged, this,
          &CaptionWindowController::present);
}

void CaptionWindowController::present() {
  panel_->setWindowTitle(L("Velun Captions", "Velun 자막"));
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
  if (!keepsOnTop) ownWindows_->raiseOverlapping();
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
      geometry_->returnToScreen();
      orderFront();
    } else {
      geometry_->store();
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
  view_->leaveHeader();
  applyVisibility();
  Q_EMIT visibilityChanged();
}

void CaptionWindowController::toggle() {
  isShown_ ? hide() : show();
}

void CaptionWindowController::setHeader(bool visible, bool animated) {
  geometry_->setHeader(visible, animated);
}

bool CaptionWindowController::headerShown() const {
  return geometry_->headerShown();
}

std::unique_ptr<QMenu> CaptionWindowController::makeMenu() const {
  return view_->makeMenu();
}

void CaptionWindowController::moveToNextPlace() {
  geometry_->moveToNextPlace();
  leavePointerBehind();
  show();
}

void CaptionWindowController::moveToNextScreen() {
  geometry_->moveToNextScreen();
  leavePointerBehind();
  show();
}

/// Through XWayland no event says that the pointer is no longer over the panel. Where it still is,
/// the header stays until it leaves.
void CaptionWindowController::leavePointerBehind() {
  view_->setHovering(false);
}

void CaptionWindowController::notify(const QString& text) {
  view_->notice().showText(text);
}

void CaptionWindowController::restorePosition() {
  geometry_->moveToDefaultPlace();
  show();
}

}  // namespace velun
