// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <QList>
#include <QRect>

namespace velun {

class PreferenceStore;

/// The caption panel's default frame: centred in a screen's available area, 60 points above its
/// bottom, with `extraHeight` added at the top. An empty area counts as 1440 × 900 at the origin.
QRect defaultPanelFrame(const QRect& area, int extraHeight = 0);

/// The panel's frame that was last stored with the present arrangement of screens, or else with
/// any; nullopt without one. Main thread.
std::optional<QRect> readPanelFrame(const PreferenceStore& frames);

/// The geometries of all screens.
QList<QRect> screenFrames();

/// Stores the frame for the present arrangement of screens and as the last one.
void writePanelFrame(PreferenceStore& frames, const QRect& frame);

/// Stores the frame for an arrangement of screens that has none: the panel was not moved while it
/// lasted.
void keepPanelFrame(PreferenceStore& frames, const QRect& frame, const QList<QRect>& screens);

}  // namespace velun
