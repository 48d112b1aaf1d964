// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace velun {

/// Compares versions: negative, zero or positive if `left` is older than, equal to or newer than
/// `right`. Numbers are compared as numbers (1.9 < 1.10), missing ones are zero (1.2 = 1.2.0), and
/// a version with a word comes before the one without (1.2-beta.2 < 1.2-rc < 1.2). A leading "v"
/// and everything after "+" are ignored.
int compareVersions(const QString& left, const QString& right);

}  // namespace velun
