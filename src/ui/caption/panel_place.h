// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QRect>
#include <QString>

namespace velun {

/// The distance between a placed panel and the edges of its area, in points.
constexpr int kPlaceGap = 12;

/// Nine places in an area, in reading order: from the upper left to the lower right.
constexpr int kPlaceCount = 9;

/// The frame at one of the nine places of `area`, `place` from 0 to 8.
QRect framedAt(int place, const QRect& frame, const QRect& area);

/// The one of the nine places that is nearest to the frame.
int nearestPlace(const QRect& frame, const QRect& area);

/// The frame at the next of the nine places: the one after the place where it is, or the nearest
/// one when it is at none.
QRect movedToNextPlace(const QRect& frame, const QRect& area);

/// The frame in the area after the one that shows most of it, at the same relative position. The
/// same frame with fewer than two areas.
QRect movedToNextArea(const QRect& frame, const QList<QRect>& areas);

/// The frame moved onto the gap at an edge or onto the centre line of `area` where it is less than
/// 12 points away from it.
QRect snapped(const QRect& frame, const QRect& area);

/// The one of the areas that shows most of the frame, or else the nearest; empty without areas.
QRect areaOf(const QRect& frame, const QList<QRect>& areas);

/// A name for an arrangement of screens, the same in whatever order they are listed.
QString nameOfArrangement(QList<QRect> screens);

}  // namespace velun
