// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace velun {

/// The most lines of the user's list of names and terms, and the most letters of each. A longer
/// list makes recognizers hear its words where they were not said.
inline constexpr int kMaxUserWords = 200;
inline constexpr int kMaxUserWordLength = 60;

/// The list as it is stored: one name or term a line, without empty lines, repetitions (in any
/// case), control characters and needless spaces, and within the limits.
QString normalizedUserWords(const QString& text);

}  // namespace velun
