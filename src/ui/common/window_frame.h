// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <QList>
#include <QRect>
#include <QString>

class QWidget;

namespace velun {

class PreferenceStore;

/// A window's frame as it is kept under a name, as "x y width height"; none when there is none or
/// it is damaged. Main thread.
std::optional<QRect> readFrame(const PreferenceStore& frames, const QString& name);
void writeFrame(PreferenceStore& frames, const QString& name, const QRect& frame);

/// What every screen leaves free for windows.
QList<QRect> freeAreas();

/// A frame that lies within the nearest of the free areas and keeps as much of its place and size
/// as it can.
QRect movedIntoView(const QRect& frame, const QList<QRect>& areas);

/// Keeps a window's frame, unless it fills the screen. Without a store (null) nothing is kept.
void storeFrame(const QWidget& window, PreferenceStore* frames, const QString& name);

/// Gives a window its kept frame, if there is one, moved so that it can be seen.
void restoreFrame(QWidget& window, const PreferenceStore* frames, const QString& name);

}  // namespace velun
