// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/linux_desktop_platform.h"

#include "platform/desktop/desktop_services.h"
#include "platform/desktop/linux/compositor_exclusion.h"
#include "platform/desktop/linux/layer_windows.h"
#include "platform/desktop/linux/portal_shortcuts.h"
#include "platform/desktop/linux/x11_bottom_anchor.h"
#include "platform/desktop/linux/x11_display.h"
#include "platform/desktop/linux/x11_full_screen_follower.h"
#include "platform/desktop/linux/x11_key_grabs.h"
#include "platform/desktop/linux/x11_selection_watch.h"
#include "platform/desktop/linux/x11_window_manager.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <QtMath>
#include <QWindow>
#include <utility>

namespace velun {

std::unique_ptr<DesktopPlatform> makeDesktopPlatform(Clock& clock) {
  return std::make_unique<LinuxDesktopPlatform>(clock);
}

std::unique_ptr<GlobalShortcuts> makeGlobalShortcuts() {
  xcb_connection_t* x11 = x11Connection();
  // On XWayland, keys can be taken only while an X window has the keyboard.
  if (x11 && !isXWayland(x11)) return std::make_unique<X11KeyGrabs>(x11);
  return std::make_unique<PortalShortcuts>(QDBusConnection::sessionBus());
}

LinuxDesktopPlatform::LinuxDesktopPlatform(Clock& clock)
    : layers_(LayerWindows::open(clock)),
      exclusion_(std::make_unique<CompositorExclusion>(QDBusConnection::sessionBus())),
      casts_(clock),
      look_(QDBusConnection::sessionBus()),
      canWatchCasts_(ScreenCastWatch::isPossible()) {
  if (xcb_connection_t* connection = x11Connection()) {
    manager_ = X11WindowManager::open(connection);
    bottomAnchor_ = std::make_unique<X11BottomAnchor>(connection);
    if (!isXWayland(connection)) {
      fullScreen_ = std::make_unique<X11FullScreenFollower>(connection);
    }
    compositorWatch_ = std::make_unique<X11SelectionWatch>(connection, "_NET_WM_CM_S0");
    connect(compositorWatch_.get(), &X11SelectionWatch::changed, this,
            &LinuxDesktopPlatform::updateCapabilities);
  }
  if (layers_) {
    connect(layers_.get(), &LayerWindows::pointerMoved, this, &LinuxDesktopPlatform::pointerMoved);
    connect(layers_.get(), &LayerWindows::showAgainRequired, this,
            &LinuxDesktopPlatform::showAgainRequired);
    // Until the panel is prepared to be an ordinary window.
    isLayer_ = layers_->isPossible();
  }
  connect(exclusion_.get(), &CompositorExclusion::isPossibleChanged, this,
          &LinuxDesktopPlatform::updateCapabilities);
  connect(&casts_, &ScreenCastWatch::castRunningChanged, this,
          &LinuxDesktopPlatform::screenCastChanged);
  connect(&casts_, &ScreenCastWatch::connectedChanged, this, [this] {
    canWatchCasts_ = casts_.isConnected();
    updateCapabilities();
  });
  connect(&look_, &LookPreferences::colorSchemeChanged, this,
          &LinuxDesktopPlatform::colorSchemeChanged);
  connect(&look_, &LookPreferences::isContrastHighChanged, this,
          &LinuxDesktopPlatform::contrastChanged);
  connect(&look_, &LookPreferences::isMotionReducedChanged, this,
          &LinuxDesktopPlatform::motionChanged);
  updateCapabilities();
}

LinuxDesktopPlatform::~LinuxDesktopPlatform() = default;

void LinuxDesktopPlatform::updateCapabilities() {
  DesktopCapabilities now;
  if (manager_) {
    now.keepsOnTop = manager_->keepsAbove();
    now.allSpaces = manager_->showsOnAllDesktops();
    now.placesWindows = now.keepsOnTop;
    now.passesClicks = manager_->passesClicks();
    now.compositing = manager_->isCompositing();
    now.blursBehind = now.compositing && manager_->blursBehind();
    // KWin does not move windows of the type that it keeps above full-screen ones.
    now.movesByItself = !manager_->isKWin() && manager_->movesWindows();
  }
  if (layers_) {
    now.keepsOnTop = now.allSpaces = layers_->isPossible();
    now.placesWindows = isLayer_;
    now.hidesPlaces = true;
    now.passesClicks = true;
    now.compositing = true;
    now.movesByItself = !isLayer_;
  }
  xcb_connection_t* x11 = x11Connection();
  now.readsWithoutCast = x11 && !isXWayland(x11);
  const bool isExcluded = exclusion_->isPossible() && !now.readsWithoutCast;
  now.captureHiding = isExcluded       ? CaptureHiding::compositor
                      : canWatchCasts_ ? CaptureHiding::whileCasting
                                       : CaptureHiding::none;
  if (std::exchange(capabilities_, now) != now) Q_EMIT capabilitiesChanged();
}

void LinuxDesktopPlatform::refreshCapabilities() {
  if (!watchesCasts_) canWatchCasts_ = ScreenCastWatch::isPossible();
  updateCapabilities();
}

QRect LinuxDesktopPlatform::availableArea(const QScreen& screen) const {
  const QRect area = screen.availableGeometry();
  if (!manager_) return area;
  // On X11, Qt ignores docks when there are several screens.
  const double ratio = screen.devicePixelRatio();
  const QRect work = manager_->workArea();
  const QRect free = area & QRect(qCeil(work.x() / ratio), qCeil(work.y() / ratio),
                                  qFloor(work.width() / ratio), qFloor(work.height() / ratio));
  return free.isEmpty() ? area : free;
}

void LinuxDesktopPlatform::prepareToShow(QWindow& window, bool keepOnTop) {
  if (layers_) {
    layers_->prepare(window, keepOnTop);
    // What follows from it is announced when the window is shown: who is told may show it.
    capabilities_.placesWindows = isLayer_ = layers_->isLayer(window);
  }
  if (!manager_) return;
  updateCapabilities();
  manager_->writeStates(window, keepOnTop);
  if (manager_->isKWin()) manager_->writeType(window, keepOnTop);
  bottomAnchor_->keep(window);
}

void LinuxDesktopPlatform::confirmShown(QWindow& window, bool keepOnTop) {
  if (layers_) updateCapabilities();
  if (!manager_) return;
  manager_->requestStates(window, keepOnTop);
  if (fullScreen_) fullScreen_->follow(window, keepOnTop);
}

bool LinuxDesktopPlatform::setKeepOnTop(QWindow& window, bool keepOnTop) {
  if (layers_) return layers_->isLayer(window) == (keepOnTop && layers_->isPossible());
  if (!manager_) return true;
  manager_->requestAbove(window, keepOnTop);
  if (fullScreen_) fullScreen_->follow(window, keepOnTop);
  return !manager_->isKWin() || manager_->isOverFullScreen(window) == keepOnTop;
}

void LinuxDesktopPlatform::setBlurBehind(QWindow& window, const QRegion& region) {
  if (manager_) manager_->writeBlur(window, region);
}

void LinuxDesktopPlatform::setShape(QWindow& window, const QRegion& region) {
  if (!manager_) return;
  window.setMask(region);
  // Qt leaves the request in its buffer until the next one.
  xcb_flush(x11Connection());
}

void LinuxDesktopPlatform::setClickThrough(QWindow& window, bool isThrough) {
  if (manager_) manager_->writeClickThrough(window, isThrough);
  if (layers_) layers_->setClickThrough(window, isThrough);
}

void LinuxDesktopPlatform::setFrame(QWindow& window, const QRect& frame) {
  if (layers_) layers_->setFrame(window, frame);
}

bool LinuxDesktopPlatform::followPointer(QWindow& window) {
  return layers_ && layers_->followPointer(window);
}

void LinuxDesktopPlatform::stopFollowingPointer() {
  if (layers_) layers_->stopFollowing();
}

bool LinuxDesktopPlatform::isPointerOver(const QWindow& window) const {
  if (layers_) return layers_->isPointerOver(window);
  return manager_ ? manager_->isPointerOver(window) : window.geometry().contains(QCursor::pos());
}

void LinuxDesktopPlatform::setExcludedFromCapture(QWindow& window, bool excluded) {
  exclusion_->setExcluded(window.title(), excluded);
}

void LinuxDesktopPlatform::watchScreenCasts(bool watch) {
  if (std::exchange(watchesCasts_, watch) == watch) return;
  casts_.setWatching(watch);
  if (!watch) return;
  canWatchCasts_ = casts_.isConnected();
  updateCapabilities();
}

}  // namespace velun
