// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop/color_scheme.h"
#include "platform/desktop/desktop_capabilities.h"

#include <QObject>
#include <QRect>
#include <QRegion>

class QScreen;
class QWindow;

namespace velun {

/// Desktop services for the caption panel and the other windows beyond those of QWindow. Nothing
/// here fails: calls that the desktop does not support have no effect; see capabilities(). Main
/// thread.
class DesktopPlatform : public QObject {
  Q_OBJECT

 public:
  virtual const DesktopCapabilities& capabilities() const = 0;

  /// Checks again what can change without a notification: whether casts can be watched.
  virtual void refreshCapabilities() = 0;

  /// The part of a screen that no dock covers, in points.
  virtual QRect availableArea(const QScreen& screen) const = 0;

  /// Sets a window's level, puts it on every virtual desktop and keeps it out of task lists. Call
  /// it before each show, once the native window exists.
  virtual void prepareToShow(QWindow& window, bool keepOnTop) = 0;

  /// Requests the same again, right after the show: a window manager that was still hiding the
  /// window may have dropped the earlier request.
  virtual void confirmShown(QWindow& window, bool keepOnTop) = 0;

  /// Changes the level of a shown window without hiding it. Returns false when this desktop also
  /// requires that the window is hidden, prepared and shown again.
  virtual bool setKeepOnTop(QWindow& window, bool keepOnTop) = 0;

  /// Blurs the window's background in `region`, in points; an empty region ends it.
  virtual void setBlurBehind(QWindow& window, const QRegion& region) = 0;

  /// Clips the window to `region`, in points, for desktops whose windows cannot be translucent; an
  /// empty region ends it.
  virtual void setShape(QWindow& window, const QRegion& region) = 0;

  /// Whether the pointer goes through the window to those beneath it. The window may be hidden, but
  /// must have its native window; the choice lasts as long as that.
  virtual void setClickThrough(QWindow& window, bool isThrough) = 0;

  /// Tells a window's new frame before its content is painted for it.
  virtual void setFrame(QWindow& window, const QRect& frame) = 0;

  /// Reports the pointer's motion by pointerMoved() until stopFollowingPointer(), for a window that
  /// is dragged where the positions in mouse events are wrong meanwhile. Returns false, and does
  /// nothing, where they are right.
  virtual bool followPointer(QWindow& window) = 0;
  virtual void stopFollowingPointer() = 0;

  /// Whether the pointer is over the window, as far as the display server reveals it.
  virtual bool isPointerOver(const QWindow& window) const = 0;

  /// Requests that the compositor leaves the window out of screen casts. Has an effect only where
  /// `captureHiding` is `compositor`.
  virtual void setExcludedFromCapture(QWindow& window, bool excluded) = 0;

  /// Enables watching for screen casts; off by default.
  virtual void watchScreenCasts(bool watch) = 0;

  /// Whether a screen cast is running; false while they are not watched.
  virtual bool isScreenCastRunning() const = 0;

  /// The colours for windows that the user has chosen in the desktop's settings.
  virtual ColorScheme colorScheme() const = 0;
  /// Whether the user has chosen higher contrast in the desktop's settings.
  virtual bool prefersHighContrast() const = 0;
  /// Whether the user has chosen reduced motion there.
  virtual bool prefersReducedMotion() const = 0;

 Q_SIGNALS:
  void capabilitiesChanged();
  void screenCastChanged();
  void colorSchemeChanged();
  void contrastChanged();
  void motionChanged();
  /// By how many points the pointer has moved since the button went down.
  void pointerMoved(const QPointF& by);
  /// The panel lies on another output than it is shown on, and must be hidden and shown again.
  void showAgainRequired();
};

}  // namespace velun
