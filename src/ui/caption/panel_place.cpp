// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/panel_place.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <QStringList>
#include <tuple>

namespace velun {

namespace {

/// How near a frame must be to snap, in points.
constexpr int kReach = 12;

/// The three positions of a length within [start, start + room): at the start, in the middle and at
/// the end.
std::array<int, 3> positions(int start, int room, int length) {
  const int first = start + kPlaceGap;
  const int last = start + room - kPlaceGap - length;
  const int middle = start + (room - length) / 2;
  // Without room for the gap, the middle serves for all.
  return first <= last ? std::array{first, middle, last} : std::array{middle, middle, middle};
}

int snappedTo(int position, const std::array<int, 3>& targets) {
  for (const int target : targets) {
    if (std::abs(position - target) < kReach) return target;
  }
  return position;
}

qint64 sizeOf(const QRect& rect) {
  return rect.isEmpty() ? 0 : qint64{rect.width()} * rect.height();
}

/// The position in the new range that corresponds to one in the old range.
int scaled(int position, int oldStart, int oldRoom, int newStart, int newRoom) {
  if (oldRoom <= 0 || newRoom <= 0) return newStart + std::max(newRoom, 0) / 2;
  const double part = std::clamp(double(position - oldStart) / oldRoom, 0.0, 1.0);
  return newStart + qRound(part * newRoom);
}

}  // namespace

QRect framedAt(int place, const QRect& frame, const QRect& area) {
  const QSize size = frame.size().boundedTo(area.size());
  const auto column = static_cast<std::size_t>(place % 3);
  const auto row = static_cast<std::size_t>(place / 3);
  return QRect(QPoint(positions(area.x(), area.width(), size.width())[column],
                      positions(area.y(), area.height(), size.height())[row]),
               size);
}

int nearestPlace(const QRect& frame, const QRect& area) {
  int nearest = 0;
  const auto distance = [&](int place) {
    return (framedAt(place, frame, area).topLeft() - frame.topLeft()).manhattanLength();
  };
  for (int place = 1; place < kPlaceCount; ++place) {
    if (distance(place) < distance(nearest)) nearest = place;
  }
  return nearest;
}

QRect movedToNextPlace(const QRect& frame, const QRect& area) {
  const int nearest = nearestPlace(frame, area);
  const QRect here = framedAt(nearest, frame, area);
  if (here != frame) return here;
  // A panel as wide or high as its area has fewer than nine different places.
  for (int step = 1; step < kPlaceCount; ++step) {
    const QRect next = framedAt((nearest + step) % kPlaceCount, frame, area);
    if (next != frame) return next;
  }
  return frame;
}

QRect areaOf(const QRect& frame, const QList<QRect>& areas) {
  if (areas.isEmpty()) return {};
  const auto distance = [&frame](const QRect& area) {
    return (area.center() - frame.center()).manhattanLength();
  };
  return *std::ranges::min_element(areas, [&](const QRect& a, const QRect& b) {
    const qint64 shownA = sizeOf(a & frame);
    const qint64 shownB = sizeOf(b & frame);
    return shownA != shownB ? shownA > shownB : distance(a) < distance(b);
  });
}

QRect movedToNextArea(const QRect& frame, const QList<QRect>& areas) {
  if (areas.size() < 2) return frame;
  const QRect from = areaOf(frame, areas);
  const QRect to = areas[(areas.indexOf(from) + 1) % areas.size()];
  QRect moved(QPoint(), frame.size().boundedTo(to.size()));
  moved.moveTopLeft({scaled(frame.x(), from.x(), from.width() - frame.width(), to.x(),
                            to.width() - moved.width()),
                     scaled(frame.y(), from.y(), from.height() - frame.height(), to.y(),
                            to.height() - moved.height())});
  return moved;
}

QRect snapped(const QRect& frame, const QRect& area) {
  QRect moved = frame;
  moved.moveTopLeft({snappedTo(frame.x(), positions(area.x(), area.width(), frame.width())),
                     snappedTo(frame.y(), positions(area.y(), area.height(), frame.height()))});
  return moved;
}

QString nameOfArrangement(QList<QRect> screens) {
  std::ranges::sort(screens, {}, [](const QRect& screen) {
    return std::tuple(screen.x(), screen.y(), screen.width(), screen.height());
  });
  QStringList names;
  for (const QRect& screen : screens) {
    names << QStringLiteral("%1x%2+%3+%4")
                 .arg(screen.width())
                 .arg(screen.height())
                 .arg(screen.x())
                 .arg(screen.y());
  }
  return names.join(u' ');
}

}  // namespace velun
