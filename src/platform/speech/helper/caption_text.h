// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

namespace velun {

/// Joins word pieces into a line of text: "▁" or a space begins a word; unprintable characters and
/// markers such as "<unk>" are removed.
QString textOfTokens(const QStringList& tokens);

/// The text without unprintable characters and markers such as "<unk>", with single spaces.
QString printable(const QString& text);

/// Text of a model that writes no case of its own: lower-case if `folds`; then, unless it has
/// upper-case letters, the first letter and the English "I" are capitalized.
QString cased(const QString& text, const QString& language, bool folds);

/// The text without the punctuation at its end: the sentence may still go on.
QString withoutEnd(const QString& text);

}  // namespace velun
