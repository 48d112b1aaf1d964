// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QMargins>
#include <QRect>

namespace velun {

/// The places of layer surfaces and of the popups over them, in points. Wayland has no coordinates
/// of the whole desktop: a layer surface lies at a distance from its output's corner, a popup at a
/// distance from its parent's.

/// The index of the output on which a window lies: the one with its centre, else the one that shows
/// most of it, else the nearest; -1 when there is no output.
qsizetype outputFor(const QRect& window, const QList<QRect>& outputs);

/// The distances of the window's left and top edges from those of its output, negative where it
/// reaches beyond them. The other two are 0, because the surface is anchored to that corner.
QMargins marginsOn(const QRect& output, const QRect& window);

/// The frame to request for a popup whose place in the coordinates of the desktop is `popup`:
/// relative to its parent.
QRect relativeTo(const QRect& parent, const QRect& popup);

}  // namespace velun
