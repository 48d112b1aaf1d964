// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>
#include <vector>

namespace velun {

/// The columns of a row of a subtitle, as customary; a wide character, such as a Hangul syllable,
/// takes two.
inline constexpr int kCueColumns = 42;

/// The columns that a text takes in a row.
int columnsOf(QStringView text);

/// The text of one caption of a subtitle file: its rows, from the top.
using CueRows = QStringList;

/// Breaks a text into captions of at most `maxRows` rows of `kCueColumns` each: into as few as
/// possible, but at least `minCount` where the text has that many words; preferably where a
/// sentence or a clause ends, with no single word left over. Line breaks count as spaces. Empty if
/// the text is.
std::vector<CueRows> breakIntoCues(const QString& text, int maxRows, int minCount);

}  // namespace velun
