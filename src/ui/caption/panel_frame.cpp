// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/panel_frame.h"

#include "platform/foundation/preference_store.h"
#include "ui/caption/caption_appearance.h"

#include <algorithm>
#include <limits>
#include <QScreen>
#include <QStringList>

namespace velun {

namespace {

const QString kKey = QStringLiteral("CaptionPanel");
constexpr QRect kFallbackArea(0, 0, 1440, 900);

int areaOf(const QRect& rect) {
  return rect.isEmpty() ? 0 : rect.width() * rect.height();
}

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

QRect movedIntoView(const QRect& frame, const QList<QRect>& freeAreas) {
  if (freeAreas.isEmpty()) return frame;
  const auto distance = [&frame](const QRect& area) {
    return (area.center() - frame.center()).manhattanLength();
  };
  const QRect nearest = *std::ranges::min_element(freeAreas, [&](const QRect& a, const QRect& b) {
    const int shownA = areaOf(a & frame), shownB = areaOf(b & frame);
    return shownA != shownB ? shownA > shownB : distance(a) < distance(b);
  });
  QRect moved(frame.topLeft(), frame.size().boundedTo(nearest.size()));
  moved.moveLeft(std::clamp(moved.left(), nearest.left(), nearest.right() + 1 - moved.width()));
  moved.moveTop(std::clamp(moved.top(), nearest.top(), nearest.bottom() + 1 - moved.height()));
  return moved;
}

std::optional<QRect> keptPanelFrame(const PreferenceStore& frames) {
  const QStringList numbers = frames.get<QString>(kKey).value_or(QString()).split(u' ');
  if (numbers.size() != 4) return std::nullopt;
  std::array<int, 4> values{};
  for (int i = 0; i < 4; ++i) {
    bool ok = false;
    values[static_cast<std::size_t>(i)] = numbers[i].toInt(&ok);
    if (!ok) return std::nullopt;
  }
  const QRect frame(values[0], values[1], values[2], values[3]);
  return frame.isEmpty() ? std::nullopt : std::optional(frame);
}

void keepPanelFrame(PreferenceStore& frames, const QRect& frame) {
  frames.set(kKey, QStringLiteral("%1 %2 %3 %4")
                       .arg(frame.x())
                       .arg(frame.y())
                       .arg(frame.width())
                       .arg(frame.height()));
}

}  // namespace velun
