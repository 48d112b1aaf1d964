// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop/desktop_capabilities.h"

#include <QObject>
#include <QRegion>

class QWindow;

namespace velun {

/// What the program's windows, the caption panel above all, ask of the desktop beyond what every
/// window does. Nothing here fails: what the desktop cannot do is left out, and `capabilities` says
/// so. Main thread.
class DesktopPlatform : public QObject {
  Q_OBJECT

 public:
  virtual const DesktopCapabilities& capabilities() const = 0;

  /// Gives a window its level, every desktop space, and no entry in task lists. To be called
  /// before each showing, while the native window exists.
  virtual void prepareToShow(QWindow& window, bool keepOnTop) = 0;

  /// Asks for the same again, right after the showing: a desktop that was still busy with hiding
  /// the window has by then forgotten what it was told before.
  virtual void confirmShown(QWindow& window, bool keepOnTop) = 0;

  /// Changes the level of a shown window, without hiding it. False when that is not enough here:
  /// the window has to be prepared and shown anew.
  virtual bool setKeepOnTop(QWindow& window, bool keepOnTop) = 0;

  /// Blurs what shows through the window in `region`, in points; an empty region ends it.
  virtual void setBlurBehind(QWindow& window, const QRegion& region) = 0;

  /// Cuts the window to `region`, in points, where no compositor draws translucent corners; an
  /// empty region ends it.
  virtual void setShape(QWindow& window, const QRegion& region) = 0;

  /// Whether the pointer is over the window, in so far as it can be told.
  virtual bool isPointerOver(const QWindow& window) const = 0;

  /// Asks the compositor to leave the program's window out of screen casts; does something only
  /// where `captureHiding` is `compositor`.
  virtual void setExcludedFromCapture(QWindow& window, bool excluded) = 0;

  /// Whether to watch for screen casts; off at first.
  virtual void watchScreenCasts(bool watch) = 0;

  /// Whether a screen cast runs, as far as it is watched for.
  virtual bool isScreenCastRunning() const = 0;

  /// Whether the user asks the desktop for higher contrast.
  virtual bool prefersHighContrast() const = 0;
  /// Whether the user asks it for less motion.
  virtual bool prefersReducedMotion() const = 0;

 Q_SIGNALS:
  void capabilitiesChanged();
  void screenCastChanged();
  void contrastChanged();
  void motionChanged();
};

}  // namespace velun
