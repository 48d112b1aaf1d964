// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/english/years.h"

#include "platform/speech/english/amounts.h"
#include "platform/speech/english/count_nouns.h"
#include "platform/speech/english/months.h"

namespace velun {

namespace {

using Kind = NumberWordKind;

struct Year {
  qint64 value = 0;
  qsizetype end = 0;
  bool isDecade = false;
  /// It cannot be anything else, such as two numbers.
  bool isCertain = false;

  QString text() const { return QString::number(value) + (isDecade ? "s" : ""); }
};

/// "nineteen eighty", but neither "nineteen twenty" nor "twenty thirty", which may be two numbers.
bool isCertainPair(qint64 first, qint64 second) {
  if (first == 20) return second < 30 || second % 5 != 0;
  const bool isRange = second > first && (second <= first + 1 || second % 5 == 0);
  if (first == 19) return !isRange || second >= 30;
  return first >= 16 && first < 19 && second >= 20 && second % 10 != 0;
}

/// "nineteen eighty four", "nineteen oh five", "nineteen eighties"
std::optional<Year> readPair(const Phrase& phrase, qsizetype at) {
  const auto first = readSmallCardinal(phrase, at);
  const bool isOneWord = first && first->end == at + 1;
  if (!isOneWord || first->value < 11 || first->value > 20) return std::nullopt;
  const qint64 century = first->value * 100;
  const NumberWord next = phrase.number(first->end);
  if (next.kind == Kind::decade) {
    return Year{century + next.value, first->end + 1, true, true};
  }
  if (next.kind == Kind::oh) {
    const NumberWord digit = phrase.number(first->end + 1);
    if (digit.kind != Kind::digit || digit.value == 0) return std::nullopt;
    return Year{century + digit.value, first->end + 2, false, first->value >= 13};
  }
  const auto second = readSmallCardinal(phrase, first->end);
  if (!second || second->value < 10) return std::nullopt;
  return Year{century + second->value, second->end, false,
              isCertainPair(first->value, second->value)};
}

/// "two thousand and five", "two thousand twenty six", "nineteen hundred", "two thousands"
std::optional<Year> readWhole(const Phrase& phrase, qsizetype at) {
  if (phrase.is(at, {"two"}) && phrase.is(at + 1, {"thousands"}) &&
      phrase.is(at - 1, {"the", "early", "mid", "late"})) {
    return Year{2000, at + 2, true, true};
  }
  const auto number = readCardinal(phrase, at);
  if (!number || number->beginsWithA || number->value < 1100 || number->value > 2099) {
    return std::nullopt;
  }
  const bool isThousands = phrase.kind(at + 1) == Kind::scale;
  if (isThousands && number->value < 2000) return std::nullopt;
  return Year{number->value, number->end, false, number->value > 2000};
}

/// "March fifth", "March five" and "March twenty fifth" before a year.
bool endsInDay(const Phrase& phrase, qsizetype at) {
  return isNumberWord(phrase, at) &&
         (isMonth(phrase, at - 1) || (isNumberWord(phrase, at - 1) && isMonth(phrase, at - 2)));
}

/// "in", "since", "March", "March fifth" before a year.
bool isBeforeYear(const Phrase& phrase, qsizetype at) {
  return phrase.is(at, {"in", "since", "until", "till", "by", "year", "early", "late", "mid",
                        "circa", "spring", "summer", "fall", "autumn", "winter"}) ||
         isMonth(phrase, at) || endsInDay(phrase, at);
}

std::optional<Year> readYear(const Phrase& phrase, qsizetype at) {
  const auto pair = readPair(phrase, at);
  return pair ? pair : readWhole(phrase, at);
}

bool isYear(const Phrase& phrase, qsizetype at, const Year& year) {
  if (year.isDecade) return true;
  const bool isBefore = isBeforeYear(phrase, at - 1);
  if (phrase.is(year.end, {"point", "percent", "dollars", "euros"})) return false;
  if (isCountNoun(phrase, year.end) && !(year.isCertain && isBefore)) return false;
  const bool isAlone = !isNumberWord(phrase, year.end) || phrase.is(year.end, {"one"}) ||
                       phrase.kind(year.end) == Kind::ordinal;
  if (!year.isCertain) return isAlone && isBefore;
  return isAlone || readYear(phrase, year.end).value_or(Year()).isCertain;
}

}  // namespace

std::optional<Rewriting> writeYear(const Phrase& phrase, qsizetype at) {
  const auto year = readYear(phrase, at);
  if (!year || !isYear(phrase, at, *year)) return std::nullopt;
  return Rewriting{year->end, {{at, year->end, year->text()}}};
}

}  // namespace velun
