// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/caption_colors.h"

namespace velun {

CaptionColors CaptionColors::highContrast() {
  const QColor line(255, 255, 255, 191);
  CaptionColors colors;
  colors.panel = Qt::black;
  colors.edge = Qt::white;
  colors.hairline = line;
  colors.buttonEdge = line;
  colors.raised = Qt::black;
  colors.raisedHover = QColor(48, 48, 54);
  colors.menu = Qt::black;
  colors.menuEdge = Qt::white;
  colors.menuSelection = QColor(11, 79, 158);
  colors.menuSelectionEdge = Qt::white;
  return colors;
}

}  // namespace velun
