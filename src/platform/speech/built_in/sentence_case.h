// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

namespace velun {

/// A sentence of a recognizer's bare English words: its first letter, "I" and common names of days,
/// months, titles, countries and languages upper case, as they are in a sentence whose punctuation
/// was restored, so that little changes when that takes a draft's place. Adds no punctuation,
/// because none was heard.
QString sentenceCase(const QStringList& words);

}  // namespace velun
