// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/panel_frame.h"

#include "ui/caption/caption_appearance.h"

#include <QScreen>

namespace velun {

namespace {

constexpr QRect kFallbackArea(0, 0, 1440, 900);

}  // namespace

QRect freeAreaOf(const QScreen* screen) {
  return screen ? screen->availableGeometry() : kFallbackArea;
}

QRect defaultPanelFrame(const QRect& freeArea, int extraHeight) {
  const QSize size = CaptionAppearance::defaultSize + QSize(0, extraHeight);
  const int left = freeArea.x() + freeArea.width() / 2 - size.width() / 2;
  const int bottom = freeArea.y() + freeArea.height() - CaptionAppearance::defaultBottomGap;
  return QRect(QPoint(left, bottom - size.height()), size);
}

}  // namespace velun
