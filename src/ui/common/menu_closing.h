// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QMenu;

namespace velun {

/// Closes all open menus when an item of this one is triggered. Qt leaves them open when a screen
/// reader triggers it, which blocks the rest of the interface. Main thread.
void closeWhenChosen(const QMenu& menu);

}  // namespace velun
