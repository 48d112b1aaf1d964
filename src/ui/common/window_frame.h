// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class QWidget;

namespace velun {

class PreferenceStore;

/// Keeps a window's frame under a name, as "x y width height". Without a store (null) nothing is
/// kept. Main thread.
void storeFrame(const QWidget& window, PreferenceStore* frames, const QString& name);

/// Gives a window its kept frame, moved so that it can be seen on a screen of now. False when none
/// is kept.
bool restoreFrame(QWidget& window, const PreferenceStore* frames, const QString& name);

}  // namespace velun
