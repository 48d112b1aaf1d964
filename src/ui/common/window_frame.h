// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <QList>
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

/// Stores a window's frame, unless it fills the screen. Does nothing when `frames` is null.
void storeFrame(const QWidget& window, PreferenceStore* frames, const QString& name);

/// Restores a window's stored frame, if there is one, moved onto a screen.
void restoreFrame(QWidget& window, const PreferenceStore* frames, const QString& name);

}  // namespace velun
