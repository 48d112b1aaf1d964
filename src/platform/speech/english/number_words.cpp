// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/english/number_words.h"

#include <QHash>

namespace velun {

namespace {

using Kind = NumberWordKind;

QHash<QString, NumberWord> makeTable() {
  QHash<QString, NumberWord> table;
  const auto add = [&table](Kind kind, qint64 value, qint64 step,
                            std::initializer_list<const char*> words) {
    for (const char* word : words) {
      table.insert(QString::fromLatin1(word), {kind, value});
      value += step;
    }
  };
  add(Kind::digit, 0, 1,
      {"zero", "one", "two", "three", "four", "five", "six", "seven", "eight", "nine"});
  add(Kind::oh, 0, 0, {"oh", "o"});
  add(Kind::teen, 10, 1,
      {"ten", "eleven", "twelve", "thirteen", "fourteen", "fifteen", "sixteen", "seventeen",
       "eighteen", "nineteen"});
  add(Kind::tens, 20, 10,
      {"twenty", "thirty", "forty", "fifty", "sixty", "seventy", "eighty", "ninety"});
  add(Kind::hundred, 100, 0, {"hundred"});
  add(Kind::ordinal, 1, 1,
      {"first", "second", "third", "fourth", "fifth", "sixth", "seventh", "eighth", "ninth",
       "tenth", "eleventh", "twelfth", "thirteenth", "fourteenth", "fifteenth", "sixteenth",
       "seventeenth", "eighteenth", "nineteenth"});
  add(Kind::ordinal, 20, 10,
      {"twentieth", "thirtieth", "fortieth", "fiftieth", "sixtieth", "seventieth", "eightieth",
       "ninetieth"});
  add(Kind::decade, 10, 10,
      {"tens", "twenties", "thirties", "forties", "fifties", "sixties", "seventies", "eighties",
       "nineties"});
  add(Kind::decade, 0, 0, {"hundreds"});
  qint64 scale = 1000;
  for (const char* word : {"thousand", "million", "billion", "trillion"}) {
    add(Kind::scale, scale, 0, {word});
    scale *= 1000;
  }
  add(Kind::ordinal, 100, 900, {"hundredth", "thousandth"});
  add(Kind::ordinal, 1'000'000, 999'000'000, {"millionth", "billionth"});
  return table;
}

}  // namespace

NumberWord numberWord(const QString& word) {
  static const QHash<QString, NumberWord> table = makeTable();
  return table.value(word);
}

}  // namespace velun
