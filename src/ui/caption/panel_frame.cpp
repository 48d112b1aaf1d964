// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/panel_frame.h"

#include "ui/caption/caption_appearance.h"
#include "ui/caption/panel_place.h"
#include "ui/common/window_frame.h"

#include <QGuiApplication>
#include <QScreen>

namespace velun {

namespace {

constexpr QRect kFallbackArea(0, 0, 1440, 900);
const auto kName = QStringLiteral("CaptionPanel");

/// The name of the frame for an arrangement of screens.
QString nameFor(const QList<QRect>& screens) {
  return kName + u' ' + nameOfArrangement(screens);
}

}  // namespace

QList<QRect> screenFrames() {
  QList<QRect> frames;
  for (const QScreen* screen : QGuiApplication::screens()) frames << screen->geometry();
  return frames;
}

QRect defaultPanelFrame(const QRect& area, int extraHeight) {
  const QRect room = area.isEmpty() ? kFallbackArea : area;
  const QSize size = CaptionAppearance::defaultSize + QSize(0, extraHeight);
  const int left = room.x() + room.width() / 2 - size.width() / 2;
  const int bottom = room.y() + room.height() - CaptionAppearance::defaultBottomGap;
  return QRect(QPoint(left, bottom - size.height()), size);
}

std::optional<QRect> readPanelFrame(const PreferenceStore& frames) {
  const std::optional<QRect> here = readFrame(frames, nameFor(screenFrames()));
  return here ? here : readFrame(frames, kName);
}

void writePanelFrame(PreferenceStore& frames, const QRect& frame) {
  writeFrame(frames, kName, frame);
  writeFrame(frames, nameFor(screenFrames()), frame);
}

void keepPanelFrame(PreferenceStore& frames, const QRect& frame, const QList<QRect>& screens) {
  const QString name = nameFor(screens);
  if (!readFrame(frames, name)) writeFrame(frames, name, frame);
}

}  // namespace velun
