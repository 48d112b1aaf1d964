// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace velun {

/// Renames a file or folder that is in the way by appending `suffix`, or `suffix` and a number:
/// nothing is ever replaced. It need not be readable. Returns whether it was renamed. Any thread.
bool setAside(const QString& path, const QString& suffix);

/// Gives a file that is about to be replaced a second name of the same kind, so that it is never
/// missing under its own. Returns whether it has one. Any thread.
bool keepCopyAside(const QString& path, const QString& suffix);

}  // namespace velun
