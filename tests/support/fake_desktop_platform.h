// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop/desktop_platform.h"

#include <QMargins>
#include <QScreen>
#include <QStringList>

namespace velun::test {

/// A desktop platform that follows the test's script and records the calls to it.
class FakeDesktopPlatform final : public DesktopPlatform {
 public:
  const DesktopCapabilities& capabilities() const override { return can; }
  void refreshCapabilities() override { ++refreshes; }
  QRect availableArea(const QScreen& screen) const override {
    return screen.availableGeometry() - dock;
  }
  void prepareToShow(QWindow&, bool keepOnTop) override {
    calls << (keepOnTop ? "prepare floating" : "prepare normal");
  }
  void confirmShown(QWindow&, bool keepOnTop) override {
    calls << (keepOnTop ? "confirm floating" : "confirm normal");
  }
  bool setKeepOnTop(QWindow&, bool keepOnTop) override {
    calls << (keepOnTop ? "floating" : "normal");
    return changesLevelWhileShown;
  }
  void setBlurBehind(QWindow&, const QRegion& region) override { blur = region; }
  void setShape(QWindow&, const QRegion& region) override { shape = region; }
  void setClickThrough(QWindow&, bool isThrough) override {
    calls << (isThrough ? "through" : "solid");
    passesClicks = isThrough;
  }
  void setFrame(QWindow&, const QRect& now) override { frame = now; }
  bool followPointer(QWindow&) override { return isFollowing = canFollow; }
  void stopFollowingPointer() override { isFollowing = false; }
  bool isPointerOver(const QWindow&) const override { return isPointerOverWindow; }
  void setExcludedFromCapture(QWindow&, bool excluded) override {
    calls << (excluded ? "excluded" : "included");
  }
  void watchScreenCasts(bool watch) override { isWatching = watch; }
  bool isScreenCastRunning() const override { return isWatching && isCasting; }
  ColorScheme colorScheme() const override { return scheme; }
  bool prefersHighContrast() const override { return isHighContrast; }
  bool prefersReducedMotion() const override { return isMotionReduced; }

  void setCapabilities(const DesktopCapabilities& now) {
    can = now;
    Q_EMIT capabilitiesChanged();
  }
  void setCasting(bool casting) {
    isCasting = casting;
    Q_EMIT screenCastChanged();
  }
  void setColorScheme(ColorScheme preferred) {
    scheme = preferred;
    Q_EMIT colorSchemeChanged();
  }
  void setHighContrast(bool high) {
    isHighContrast = high;
    Q_EMIT contrastChanged();
  }
  void setReducedMotion(bool reduced) {
    isMotionReduced = reduced;
    Q_EMIT motionChanged();
  }

  DesktopCapabilities can;
  QStringList calls;
  /// The edges of every screen that docks cover.
  QMargins dock;
  QRegion blur;
  QRegion shape;
  QRect frame;
  int refreshes = 0;
  bool changesLevelWhileShown = true;
  bool passesClicks = false;
  bool isPointerOverWindow = false;
  bool canFollow = false;
  bool isFollowing = false;
  bool isWatching = false;
  bool isCasting = false;
  ColorScheme scheme = ColorScheme::any;
  bool isHighContrast = false;
  bool isMotionReduced = false;
};

}  // namespace velun::test
