// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace velun {

/// Tells, without waiting for an answer, that the desktop has no place for the status item and how
/// the program is reached instead.
void showStatusItemNotice();

}  // namespace velun
