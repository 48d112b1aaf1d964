// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/english/spelled_letters.h"

#include "platform/speech/english/sentence_marks.h"

#include <QSet>

namespace velun {

namespace {

/// A longer run is a name that is spelled.
constexpr qsizetype kMaxLetters = 4;
const auto kPossessive = QStringLiteral("'s");

bool isLetter(const QString& word) {
  return word.size() == 1 && word[0] >= u'a' && word[0] <= u'z';
}

/// Letters that are said one by one: "c e o's".
struct Run {
  QString letters;
  QString ending;  ///< "'s", or empty
  qsizetype end = 0;
};

Run readLetters(const Phrase& phrase, qsizetype at) {
  Run run{{}, {}, at};
  while (isLetter(phrase.word(run.end))) run.letters += phrase.word(run.end++);
  const QString last = phrase.word(run.end);
  if (run.letters.isEmpty() || !last.endsWith(kPossessive)) return run;
  const QString letter = last.chopped(kPossessive.size());
  if (isLetter(letter)) run = {run.letters + letter, kPossessive, run.end + 1};
  return run;
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

/// Abbreviations that are usual before names: "the US Senate", "CEO Tim Cook".
bool isUsualBeforeNames(const QString& letters) {
  static const QSet<QString> usual = {
      "us",  "uk",  "un",   "eu",  "tv",  "dc",  "la",   "ny",   "ceo", "cfo", "cto",  "vp",
      "hr",  "pr",  "pm",   "mp",  "ms",  "dj",  "mc",   "bbc",  "cbs", "nbc", "cnn",  "pbs",
      "hbo", "mtv", "espn", "nfl", "nhl", "mlb", "bmw",  "gm",   "hp",  "ge",  "lg",   "mit",
      "cd",  "dvd", "pc",   "gps", "cpu", "gpu", "html", "css",  "sql", "url", "usb",  "pdf",
      "js",  "db",  "kgb",  "imf", "wto", "cdc", "nyc",  "nypd", "gdp", "ufo", "ussr",
  };
  return usual.contains(letters) || isKnown(letters);
}

/// Initials: "W E B Du Bois". The letters of most other abbreviations stay apart too, which reads
/// well; joined initials do not.
bool mayBeInitials(const Phrase& phrase, const Run& run) {
  if (isUsualBeforeNames(run.letters) || !run.ending.isEmpty()) return false;
  const bool isLast = run.end == phrase.end();
  const QString next = isLast ? phrase.following() : phrase.original(run.end);
  return next.size() > 1 && next[0].isUpper() && next[1].isLower() && !isFunctionWord(next);
}

Rewriting apart(const Run& run, qsizetype at) {
  Rewriting rewriting{run.end, {}};
  for (const QChar letter : run.letters) {
    rewriting.pieces.push_back({at, at + 1, letter.toUpper()});
    ++at;
  }
  return rewriting;
}

}  // namespace

std::optional<Rewriting> writeSpelledLetters(const Phrase& phrase, qsizetype at) {
  const Run run = readLetters(phrase, at);
  const auto& [letters, ending, end] = run;
  if (letters.size() < 2) return std::nullopt;
  if (letters == QLatin1String("eg") && ending.isEmpty()) {
    const bool beginsSentence = phrase.word(at - 1).isEmpty();
    return Rewriting{end, {{at, end, beginsSentence ? "E.g." : "e.g."}}};
  }
  if (isSafe(letters)) {
    if (mayBeInitials(phrase, run)) return apart(run, at);
    return Rewriting{end, {{at, end, letters.toUpper() + ending}}};
  }
  // The last letter may be a word: "the f b i a year ago".
  const QString front = letters.chopped(1);
  if (isKnown(front)) return Rewriting{end - 1, {{at, end - 1, front.toUpper()}}};
  // The first letter may be an article: "a t v".
  const QString back = letters.mid(1);
  if (letters.front() == u'a' && isSafe(back)) {
    return Rewriting{end, {{at + 1, end, back.toUpper() + ending}}};
  }
  return Rewriting{end, {}};
}

}  // namespace velun
