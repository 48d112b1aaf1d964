// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/english/ordinals.h"

#include "platform/speech/english/amounts.h"
#include "platform/speech/english/months.h"

namespace velun {

namespace {

using Kind = NumberWordKind;

struct Ordinal {
  qint64 value = 0;
  qsizetype end = 0;
  bool endsInSecond = false;
};

/// Whether an ordinal continues a whole number: "twenty" + "first", "one hundred" + "fifth".
bool continues(qint64 whole, qint64 ordinal) {
  if (whole % 100 == 0) return whole > 0 && ordinal < 100;
  return whole % 100 >= 20 && whole % 10 == 0 && ordinal < 10;
}

std::optional<Ordinal> readOrdinal(const Phrase& phrase, qsizetype at) {
  const NumberWord alone = phrase.number(at);
  if (alone.kind == Kind::ordinal) return Ordinal{alone.value, at + 1};
  const auto whole = readCardinal(phrase, at);
  if (!whole || whole->beginsWithA) return std::nullopt;
  const bool hasAnd = whole->value % 100 == 0 && phrase.is(whole->end, {"and"});
  const qsizetype last = hasAnd ? whole->end + 1 : whole->end;
  const NumberWord next = phrase.number(last);
  if (next.kind != Kind::ordinal || !continues(whole->value, next.value)) return std::nullopt;
  return Ordinal{whole->value + next.value, last + 1, next.value == 2};
}

QString suffix(qint64 value) {
  const qint64 tens = value % 100;
  if (tens >= 11 && tens <= 13) return QStringLiteral("th");
  switch (value % 10) {
    case 1:
      return QStringLiteral("st");
    case 2:
      return QStringLiteral("nd");
    case 3:
      return QStringLiteral("rd");
    default:
      return QStringLiteral("th");
  }
}

bool isClear(const Phrase& phrase, qsizetype at, const Ordinal& ordinal) {
  // "we may first" and "we may second" are no days.
  const bool isAfterMonth =
      isMonth(phrase, at - 1) || (ordinal.value > 2 && phrase.is(at - 1, {"march", "may"}));
  const bool isDay = isAfterMonth && ordinal.value <= 31;
  if (isDay) return true;
  if (ordinal.value < 10 || phrase.kind(ordinal.end) == Kind::ordinal) return false;
  const bool isOneWord = ordinal.end == at + 1;
  if (isOneWord && (ordinal.value >= 100 || phrase.is(at - 1, {"a", "one"}))) return false;
  if (!ordinal.endsInSecond) return true;
  const bool isAtEnd = ordinal.end == phrase.end() && !phrase.hasReachedEnd();
  return phrase.is(at - 1, {"the", "on"}) &&
         (isAtEnd || phrase.is(ordinal.end, {"of", "century", "amendment", "anniversary", "and",
                                             "street", "day", "floor", "is", "was"}));
}

}  // namespace

std::optional<Rewriting> writeOrdinal(const Phrase& phrase, qsizetype at) {
  const auto ordinal = readOrdinal(phrase, at);
  if (!ordinal) return std::nullopt;
  if (!isClear(phrase, at, *ordinal)) return Rewriting{ordinal->end, {}};
  const QString text = QString::number(ordinal->value) + suffix(ordinal->value);
  return Rewriting{ordinal->end, {{at, ordinal->end, text}}};
}

}  // namespace velun
