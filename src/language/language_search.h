// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

namespace velun {

/// The form in which names of languages are compared: without case and accents, with Hangul
/// syllables taken apart, so that a name also matches while its syllables are being typed.
QString foldedLanguageName(const QString& text);

/// What a language or locale can be found by, folded: its names in English, Korean and in the
/// language itself, and its identifier.
QStringList languageSearchNames(const QString& identifier);

/// How well a folded search matches folded names.
enum class LanguageMatch {
  none,
  inside,     ///< a name contains it
  wordStart,  ///< a word of a name begins with it; an empty search matches so too
};

LanguageMatch matchLanguage(const QStringList& foldedNames, const QString& foldedSearch);

}  // namespace velun
