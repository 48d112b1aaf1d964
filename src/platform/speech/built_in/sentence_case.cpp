// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/built_in/sentence_case.h"

#include <QSet>

namespace velun {

namespace {

/// Whether a word of the recognizer's dictionary is always capitalized. "may", "march", "august"
/// and "turkey" are not, because they have other meanings.
bool hasCapital(const QString& word) {
  static const QSet<QString> words = {
      "i",        "mr",        "mrs",       "ms",       "dr",       "monday",    "tuesday",
      "friday",   "saturday",  "sunday",    "january",  "february", "april",     "june",
      "july",     "october",   "november",  "december", "america",  "africa",    "asia",
      "europe",   "england",   "france",    "germany",  "italy",    "spain",     "russia",
      "japan",    "korea",     "india",     "canada",   "mexico",   "english",   "french",
      "german",   "spanish",   "russian",   "chinese",  "korean",   "japanese",  "british",
      "american", "americans", "european",  "african",  "indian",   "wednesday", "london",
      "paris",    "christmas", "september", "thursday", "easter",   "australia",
  };
  return words.contains(word);
}

}  // namespace

QString sentenceCase(const QStringList& words) {
  QStringList cased = words;
  for (QString& word : cased) {
    // "i'm", "i'll" and "monday's" too.
    if (hasCapital(word.section(u'\'', 0, 0))) word[0] = word[0].toUpper();
  }
  if (!cased.isEmpty() && !cased.first().isEmpty()) {
    cased.first()[0] = cased.first()[0].toUpper();
  }
  return cased.join(u' ');
}

}  // namespace velun
