// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/panel_frame.h"

#include "ui/caption/caption_appearance.h"

#include <QScreen>

namespace velun {

namespace {

constexpr QRect kFallbackArea(0, 0, 1440, 900);

}  // namespace

QRect availableArea(const QScreen* screen) {
  return screen ? screen->availableGeometry() : kFallbackArea;
}

QRect defaultPanelFrame(const QRect& area, int extraHeight) {
  const QSize size = CaptionAppearance::defaultSize + QSize(0, extraHeight);
  const int left = area.x() + area.width() / 2 - size.width() / 2;
  const int bottom = area.y() + area.height() - CaptionAppearance::defaultBottomGap;
  return QRect(QPoint(left, bottom - size.height()), size);
}

}  // namespace velun
