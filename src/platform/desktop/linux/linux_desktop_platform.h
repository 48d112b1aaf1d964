// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop/desktop_platform.h"
#include "platform/desktop/linux/look_preferences.h"
#include "platform/desktop/linux/screen_cast_watch.h"

#include <memory>

namespace velun {

class CompositorExclusion;
class LayerWindows;
class X11BottomAnchor;
class X11FullScreenFollower;
class X11SelectionWatch;
class X11WindowManager;

/// The desktop on X11, on XWayland, or natively on Wayland: there the panel is a layer surface
/// where the compositor has them and it is kept on top, otherwise an ordinary window.
class LinuxDesktopPlatform final : public DesktopPlatform {
  Q_OBJECT

 public:
  explicit LinuxDesktopPlatform(Clock& clock);
  ~LinuxDesktopPlatform() override;

  const DesktopCapabilities& capabilities() const override { return capabilities_; }
  void refreshCapabilities() override;
  QRect availableArea(const QScreen& screen) const override;
  void prepareToShow(QWindow& window, bool keepOnTop) override;
  void confirmShown(QWindow& window, bool keepOnTop) override;
  bool setKeepOnTop(QWindow& window, bool keepOnTop) override;
  void setBlurBehind(QWindow& window, const QRegion& region) override;
  void setShape(QWindow& window, const QRegion& region) override;
  void setClickThrough(QWindow& window, bool isThrough) override;
  void setFrame(QWindow& window, const QRect& frame) override;
  bool followPointer(QWindow& window) override;
  void stopFollowingPointer() override;
  bool isPointerOver(const QWindow& window) const override;
  void setExcludedFromCapture(QWindow& window, bool excluded) override;
  void watchScreenCasts(bool watch) override;
  bool isScreenCastRunning() const override { return casts_.isCastRunning(); }
  ColorScheme colorScheme() const override { return look_.colorScheme(); }
  bool prefersHighContrast() const override { return look_.isContrastHigh(); }
  bool prefersReducedMotion() const override { return look_.isMotionReduced(); }

 private:
  void updateCapabilities();

  DesktopCapabilities capabilities_;
  std::unique_ptr<X11WindowManager> manager_;
  /// Null unless Qt runs on Wayland.
  std::unique_ptr<LayerWindows> layers_;
  bool isLayer_ = false;
  std::unique_ptr<X11BottomAnchor> bottomAnchor_;
  /// Null on XWayland, whose compositors decide themselves.
  std::unique_ptr<X11FullScreenFollower> fullScreen_;
  std::unique_ptr<X11SelectionWatch> compositorWatch_;
  std::unique_ptr<CompositorExclusion> exclusion_;
  ScreenCastWatch casts_;
  LookPreferences look_;
  bool canWatchCasts_ = false;
  bool watchesCasts_ = false;
};

}  // namespace velun
