// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QRect>

class QScreen;

namespace velun {

/// The caption panel's default frame: centred in a screen's available area, 60 points above its
/// bottom, with `extraHeight` added at the top.
QRect defaultPanelFrame(const QRect& area, int extraHeight = 0);

/// The available area of the screen; 1440 × 900 at the origin when `screen` is null.
QRect availableArea(const QScreen* screen);

}  // namespace velun
