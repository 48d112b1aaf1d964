// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <compare>
#include <QString>

namespace velun {

/// Which of two version texts is the newer one, as people read them: numbers count as numbers
/// (1.10 is newer than 1.9), missing ones are zero (1.2 is 1.2.0), and a version with a word behind
/// its number comes before the plain one (1.2-beta.2 < 1.2-rc < 1.2). A leading "v" and what
/// follows a "+" do not count.
std::weak_ordering compareVersions(const QString& left, const QString& right);

}  // namespace velun
