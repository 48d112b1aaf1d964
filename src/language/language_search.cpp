// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/language_search.h"

#include <algorithm>
#include <array>
#include <unicode/locid.h>
#include <unicode/unistr.h>

namespace velun {

namespace {

constexpr char16_t kFirstInitial = 0x1100;
constexpr char16_t kFirstFinal = 0x11a8;

struct Initials {
  int first;
  int second = -1;
};

/// The initial consonants, by their number, that each final consonant of Hangul consists of.
constexpr std::array<Initials, 27> kFinals = {
    {{0},    {1},    {0, 9}, {2},     {2, 12}, {2, 18}, {3},  {5},  {5, 0},
     {5, 6}, {5, 7}, {5, 9}, {5, 16}, {5, 17}, {5, 18}, {6},  {7},  {7, 9},
     {9},    {10},   {11},   {12},    {14},    {15},    {16}, {17}, {18}}};

/// While "러시아" is typed, its second consonant first stands at the end of "럿".
QString withoutFinals(QChar character) {
  const int number = character.unicode() - kFirstFinal;
  if (number < 0 || number >= static_cast<int>(kFinals.size())) return character;
  const auto [first, second] = kFinals[static_cast<std::size_t>(number)];
  QString initials = QChar(kFirstInitial + first);
  if (second >= 0) initials += QChar(kFirstInitial + second);
  return initials;
}

QString nameIn(const icu::Locale& locale, const icu::Locale& display) {
  icu::UnicodeString name;
  locale.getDisplayName(display, name);
  return QString::fromUtf16(name.getBuffer(), name.length());
}

bool beginsWord(const QString& name, qsizetype position) {
  return position == 0 || !name[position - 1].isLetterOrNumber();
}

LanguageMatch matchName(const QString& name, const QString& search) {
  LanguageMatch best = LanguageMatch::none;
  for (qsizetype at = name.indexOf(search); at >= 0; at = name.indexOf(search, at + 1)) {
    if (beginsWord(name, at)) return LanguageMatch::wordStart;
    best = LanguageMatch::inside;
  }
  return best;
}

}  // namespace

QString foldedLanguageName(const QString& text) {
  QString folded;
  for (const QChar character : text.normalized(QString::NormalizationForm_KD).toCaseFolded()) {
    if (!character.isMark()) folded += withoutFinals(character);
  }
  return folded.simplified();
}

QStringList languageSearchNames(const QString& identifier) {
  const icu::Locale locale = icu::Locale::createCanonical(identifier.toUtf8().constData());
  QStringList names{foldedLanguageName(identifier)};
  if (locale.isBogus() || !*locale.getLanguage()) return names;
  for (const icu::Locale& display : {icu::Locale("en"), icu::Locale("ko"), locale}) {
    names += foldedLanguageName(nameIn(locale, display));
  }
  names.removeDuplicates();
  return names;
}

LanguageMatch matchLanguage(const QStringList& foldedNames, const QString& foldedSearch) {
  LanguageMatch best = LanguageMatch::none;
  if (foldedSearch.isEmpty()) return LanguageMatch::wordStart;
  for (const QString& name : foldedNames) best = std::max(best, matchName(name, foldedSearch));
  return best;
}

}  // namespace velun
