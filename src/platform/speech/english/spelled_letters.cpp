// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/english/spelled_letters.h"

#include <QSet>

namespace velun {

namespace {

/// A longer run is a name that is spelled.
constexpr qsizetype kMaxLetters = 4;

bool isLetter(const Phrase& phrase, qsizetype at) {
  const QString& word = phrase.word(at);
  return word.size() == 1 && word[0] >= u'a' && word[0] <= u'z';
}

/// Abbreviations that begin or end with a letter that is also a word.
bool isKnown(const QString& letters) {
  static const QSet<QString> known = {
      "api", "atm", "cia",  "dea", "dna", "epa", "fbi", "fda", "gui", "ibm", "id",  "ipo",
      "iq",  "irs", "mba",  "mri", "nba", "nsa", "pta", "rna", "ui",  "usa", "aca", "cpa",
      "gpa", "hiv", "ieee", "ira", "isp", "ngo", "roi", "sba", "tsa", "uae",
  };
  return known.contains(letters);
}

bool isSafe(const QString& letters) {
  const auto isWord = [](QChar letter) {
    return letter == u'a' || letter == u'i';
  };
  if (letters.size() < 2 || letters.size() > kMaxLetters) return false;
  const bool isStutter = letters.count(letters.front()) == letters.size();
  if (isStutter) return false;
  if (isKnown(letters)) return true;
  return !isWord(letters.front()) && letters.front() != u'o' && !isWord(letters.back());
}

}  // namespace

std::optional<Rewriting> writeSpelledLetters(const Phrase& phrase, qsizetype at) {
  QString letters;
  qsizetype end = at;
  while (isLetter(phrase, end)) letters += phrase.word(end++);
  if (letters.size() < 2) return std::nullopt;
  if (isSafe(letters)) return Rewriting{end, {{at, end, letters.toUpper()}}};
  // The last letter may be a word: "the f b i a year ago".
  const QString front = letters.chopped(1);
  if (isKnown(front)) return Rewriting{end - 1, {{at, end - 1, front.toUpper()}}};
  // The first letter may be an article: "a t v".
  const QString back = letters.mid(1);
  if (letters.front() == u'a' && isSafe(back)) {
    return Rewriting{end, {{at + 1, end, back.toUpper()}}};
  }
  return Rewriting{end, {}};
}

}  // namespace velun
