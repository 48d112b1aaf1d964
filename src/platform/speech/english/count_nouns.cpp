// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/english/count_nouns.h"

#include <QSet>

namespace velun {

bool isCountNoun(const Phrase& phrase, qsizetype at) {
  static const QSet<QString> nouns = {
      "percent",    "per",        "dollars",   "dollar",    "euros",     "pounds",       "cents",
      "bucks",      "years",      "months",    "weeks",     "days",      "hours",        "minutes",
      "seconds",    "people",     "men",       "women",     "children",  "kids",         "students",
      "jobs",       "times",      "miles",     "feet",      "meters",    "metres",       "inches",
      "degrees",    "kilometers", "points",    "pages",     "members",   "countries",    "states",
      "items",      "copies",     "units",     "users",     "companies", "customers",    "stores",
      "basis",      "tons",       "tonnes",    "acres",     "gallons",   "kilos",        "grams",
      "watts",      "bytes",      "megabytes", "gigabytes", "lines",     "words",        "votes",
      "cars",       "houses",     "homes",     "soldiers",  "troops",    "milliseconds", "episodes",
      "developers", "engineers",  "families",  "americans", "workers",
  };
  return nouns.contains(phrase.word(at));
}

}  // namespace velun
