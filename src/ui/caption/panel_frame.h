// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <QRect>

class QScreen;

namespace velun {

class PreferenceStore;

/// Where the caption panel stands when nothing else is known: in the middle of the free area of a
/// screen, 60 points above its bottom, with `extraHeight` added to its height at the top.
QRect defaultPanelFrame(const QRect& freeArea, int extraHeight = 0);

/// The free area of the screen, or a rectangle of 1440 × 900 at the origin without a screen.
QRect freeAreaOf(const QScreen* screen);

/// A frame that lies within the nearest of the free areas and keeps as much of its place and size
/// as it can.
QRect movedIntoView(const QRect& frame, const QList<QRect>& freeAreas);

/// The frame kept under "CaptionPanel"; none when there is none or it is damaged.
std::optional<QRect> keptPanelFrame(const PreferenceStore& frames);
void keepPanelFrame(PreferenceStore& frames, const QRect& frame);

}  // namespace velun
