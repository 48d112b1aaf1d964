// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/window_frame.h"

#include "platform/foundation/preference_store.h"

#include <algorithm>
#include <array>
#include <QGuiApplication>
#include <QScreen>
#include <QStringList>
#include <QWidget>

namespace velun {

namespace {

/// Between a window and the one that it is placed beside, in points.
constexpr int kGap = 8;

qint64 sizeOf(const QRect& rect) {
  return rect.isEmpty() ? 0 : qint64{rect.width()} * rect.height();
}

}  // namespace

std::optional<QRect> readFrame(const PreferenceStore& frames, const QString& name) {
  const QStringList parts = frames.get<QString>(name).value_or(QString()).split(u' ');
  std::array<int, 4> numbers{};
  if (parts.size() != qsizetype(numbers.size())) return std::nullopt;
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    bool isNumber = false;
    numbers[i] = parts[qsizetype(i)].toInt(&isNumber);
    if (!isNumber) return std::nullopt;
  }
  const QRect frame(numbers[0], numbers[1], numbers[2], numbers[3]);
  return frame.isEmpty() ? std::nullopt : std::optional(frame);
}

void writeFrame(PreferenceStore& frames, const QString& name, const QRect& frame) {
  const QString text = QStringLiteral("%1 %2 %3 %4")
                           .arg(frame.x())
                           .arg(frame.y())
                           .arg(frame.width())
                           .arg(frame.height());
  if (frames.get<QString>(name) != text) frames.set(name, text);
}

QList<QRect> freeAreas() {
  QList<QRect> areas;
  for (const QScreen* screen : QGuiApplication::screens()) areas << screen->availableGeometry();
  return areas;
}

QRect movedIntoView(const QRect& frame, const QList<QRect>& areas) {
  if (areas.isEmpty()) return frame;
  const auto distance = [&frame](const QRect& area) {
    return (area.center() - frame.center()).manhattanLength();
  };
  const QRect nearest = *std::ranges::min_element(areas, [&](const QRect& a, const QRect& b) {
    const qint64 shownA = sizeOf(a & frame);
    const qint64 shownB = sizeOf(b & frame);
    return shownA != shownB ? shownA > shownB : distance(a) < distance(b);
  });
  QRect moved(frame.topLeft(), frame.size().boundedTo(nearest.size()));
  moved.moveLeft(std::clamp(moved.left(), nearest.left(), nearest.right() + 1 - moved.width()));
  moved.moveTop(std::clamp(moved.top(), nearest.top(), nearest.bottom() + 1 - moved.height()));
  return moved;
}

QRect centredIn(const QRect& area, const QSize& size) {
  QRect frame(QPoint(), size);
  frame.moveCenter(area.center());
  return frame;
}

std::optional<QRect> placedBeside(const QRect& avoided, const QRect& area, const QSize& size) {
  const QRect middle = centredIn(area, size);
  std::array<QRect, 4> places;
  places.fill(middle);
  places[0].moveBottom(avoided.top() - 1 - kGap);
  places[1].moveTop(avoided.bottom() + 1 + kGap);
  places[2].moveRight(avoided.left() - 1 - kGap);
  places[3].moveLeft(avoided.right() + 1 + kGap);
  std::optional<QRect> nearest;
  const auto distance = [&middle](const QRect& frame) {
    return (frame.topLeft() - middle.topLeft()).manhattanLength();
  };
  for (const QRect& place : places) {
    if (area.contains(place) && (!nearest || distance(place) < distance(*nearest))) nearest = place;
  }
  return nearest;
}

void storeFrame(const QWidget& window, PreferenceStore& frames, const QString& name) {
  if (window.isMaximized() || window.isFullScreen()) return;
  writeFrame(frames, name, window.geometry());
}

void restoreFrame(QWidget& window, const PreferenceStore& frames, const QString& name) {
  const std::optional<QRect> frame = readFrame(frames, name);
  if (frame) window.setGeometry(movedIntoView(*frame, freeAreas()));
}

}  // namespace velun
