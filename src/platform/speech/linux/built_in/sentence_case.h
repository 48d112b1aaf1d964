// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

namespace velun {

/// A sentence of a recognizer's bare English words: its first letter and "I" upper case. Adds no
/// punctuation, because none was heard.
QString sentenceCase(const QStringList& words);

}  // namespace velun
