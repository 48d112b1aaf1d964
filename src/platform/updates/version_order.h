// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace velun {

/// Negative, zero or positive as `left` is older than, the same as or newer than `right`, the way
/// people read versions: numbers count as numbers (1.10 is newer than 1.9), missing ones are zero
/// (1.2 is 1.2.0), and a version with a word behind its number comes before the plain one
/// (1.2-beta.2 < 1.2-rc < 1.2). A leading "v" and what follows a "+" do not count.
int compareVersions(const QString& left, const QString& right);

}  // namespace velun
