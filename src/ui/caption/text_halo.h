// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "settings/panel_style.h"

#include <QImage>

namespace velun {

/// The radius of an outline for letters of a size, both in points.
double haloRadius(double textSize);

/// How far an outline or a shadow reaches beyond the letters, for a radius, in the same unit.
int haloReach(TextEdge edge, double radius);

/// The outline or shadow of a text, to be painted below it, of the text's size. `text` shows the
/// letters and, around them, `haloReach` pixels of nothing; `radius` is in its pixels.
QImage textHalo(const QImage& text, TextEdge edge, double radius, const QColor& color);

/// Black around light letters, white around dark ones.
QColor haloColor(const QColor& text);

}  // namespace velun
