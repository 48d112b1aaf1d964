// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace velun {

/// Shows a non-modal notice that the desktop has no system tray and how to reach the program
/// instead.
void showStatusItemNotice();

}  // namespace velun
