// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

namespace velun {

/// A sentence of lower-case English words, with upper case for its first letter, "I" and common
/// names of days, months, titles, countries and languages, as restored punctuation writes them, so
/// that little changes when the final result replaces a draft. Adds no punctuation.
QString sentenceCase(const QStringList& words);

}  // namespace velun
