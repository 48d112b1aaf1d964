// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <QList>
#include <QMargins>
#include <QRect>
#include <QString>

class QWidget;

namespace velun {

class PreferenceStore;

/// Reads a window's frame stored under `name` as "x y width height"; nullopt when it is missing or
/// malformed. Main thread.
std::optional<QRect> readFrame(const PreferenceStore& frames, const QString& name);
void writeFrame(PreferenceStore& frames, const QString& name, const QRect& frame);

/// The available geometry of every screen.
QList<QRect> freeAreas();

/// Moves a frame into the nearest of the areas, keeping as much of its position and size as
/// possible.
QRect movedIntoView(const QRect& frame, const QList<QRect>& areas);

/// The usual size of a title bar and borders. The real size is known only after the window manager
/// has placed a window.
constexpr QMargins usualFrameMargins() {
  return {6, 34, 6, 6};
}

/// The frame of that size in the middle of an area.
QRect centredIn(const QRect& area, const QSize& size);

/// The frame of that size inside `area` that is nearest to its middle and leaves `avoided` free;
/// nullopt when there is no room for it.
std::optional<QRect> placedBeside(const QRect& avoided, const QRect& area, const QSize& size);

/// Stores a window's frame, unless it fills the screen.
void storeFrame(const QWidget& window, PreferenceStore& frames, const QString& name);

/// Restores a window's stored frame, if there is one, moved onto a screen.
void restoreFrame(QWidget& window, const PreferenceStore& frames, const QString& name);

}  // namespace velun
