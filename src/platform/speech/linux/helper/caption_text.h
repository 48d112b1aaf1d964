// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

namespace velun {

/// A line put together from word pieces: "▁" or a blank begins a word; pieces that cannot be
/// printed and marks such as "<unk>" are left out.
QString textOfTokens(const QStringList& tokens);

/// The text without what cannot be printed and without marks such as "<unk>"; single blanks.
QString printable(const QString& text);

/// How a model's text is shown when it has no case of its own: its letters made small, if `folds`;
/// then the first letter, and the English "I", made large, unless the text has large letters.
QString cased(const QString& text, const QString& language, bool folds);

/// The text without the marks that end its last sentence, which may still go on.
QString withoutEnd(const QString& text);

}  // namespace velun
