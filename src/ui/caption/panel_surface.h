// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "settings/panel_style.h"

#include <QRectF>

class QPainter;

namespace velun {

/// The colour and opacity of the panel's background. `blurs`: the desktop blurs what is behind it.
QColor panelFill(const PanelStyle& style, bool blurs);

/// Paints the panel's background with a fine line around it, which a background without opacity
/// does not have.
void paintPanelSurface(QPainter& painter, const QRectF& rect, double corner, const QColor& fill,
                       const QColor& edge);

/// Whether the panel's white controls need a dark background of their own, because the style's is
/// too light or lets light ones through.
bool needsControlSurface(const PanelStyle& style);

/// The style while the desktop asks for high contrast: white on black, with the style's font,
/// spacing, sizes and order.
PanelStyle highContrastStyle(PanelStyle style);

/// The lowest contrast of the texts of a style, whatever is behind the panel.
double lowestContrast(const PanelStyle& style);

}  // namespace velun
