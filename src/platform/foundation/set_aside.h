// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace velun {

/// Renames a file or folder that is in the way by appending `suffix`, or `suffix` and a number:
/// nothing is ever replaced. It need not be readable. Returns whether it was renamed. Any thread.
bool setAside(const QString& path, const QString& suffix);

}  // namespace velun
