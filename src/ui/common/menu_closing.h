// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QMenu;

namespace velun {

/// Closes the menus that are open when an item of this one is chosen: where assistive technology
/// chooses it, the toolkit leaves them open, and nothing else can be used. Main thread.
void closeWhenChosen(const QMenu& menu);

}  // namespace velun
