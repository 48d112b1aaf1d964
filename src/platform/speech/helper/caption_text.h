// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace velun {

/// Joins word pieces in UTF-8 into a line of text: "▁" or a space begins a word; pieces such as
/// "<0xE5>" are single bytes; unprintable characters and markers such as "<unk>" are removed.
QString textOfTokens(const QList<QByteArray>& tokens);

/// The text without unprintable characters and markers such as "<unk>", with single spaces.
QString printable(const QString& text);

/// Text of a model that writes no case of its own: lower-case if `folds`; then, unless it has
/// upper-case letters, the first letter and the English "I" are capitalized.
QString cased(const QString& text, const QString& language, bool folds);

/// The text without the marks at its beginning that can only end something, such as a full stop
/// that was recognized late: it belongs to the line before. "¿" and quotation marks stay.
QString withoutLateMarks(const QString& text);

/// The marks at the beginning of the text that `withoutLateMarks` removes.
QString lateMarks(const QString& text);

/// Whether the text ends with a mark that ends a sentence, perhaps before a closing quotation mark.
bool endsSentence(const QString& text);

/// The text without the punctuation at its end: the sentence may still go on.
QString withoutEnd(const QString& text);

}  // namespace velun
