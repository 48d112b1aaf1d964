// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QRect>

class QScreen;

namespace velun {

/// Where the caption panel stands when nothing else is known: in the middle of the free area of a
/// screen, 60 points above its bottom, with `extraHeight` added to its height at the top.
QRect defaultPanelFrame(const QRect& freeArea, int extraHeight = 0);

/// The free area of the screen, or a rectangle of 1440 × 900 at the origin without a screen.
QRect freeAreaOf(const QScreen* screen);

}  // namespace velun
