// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/english/amounts.h"

#include <limits>
#include <QLocale>

namespace velun {

namespace {

using Kind = NumberWordKind;

constexpr qint64 kMillion = 1'000'000;

bool isHundredOrScale(const Phrase& phrase, qsizetype at) {
  const Kind kind = phrase.kind(at);
  return kind == Kind::hundred || kind == Kind::scale;
}

/// A number below one hundred that belongs to the number before it: "one hundred and five", but not
/// "one hundred and five hundred".
std::optional<Cardinal> readRest(const Phrase& phrase, qsizetype at, bool allowsScale) {
  const qsizetype begin = phrase.is(at, {"and"}) ? at + 1 : at;
  const auto rest = readSmallCardinal(phrase, begin);
  if (!rest || rest->value == 0) return std::nullopt;
  const bool isOtherNumber =
      allowsScale ? phrase.kind(rest->end) == Kind::hundred : isHundredOrScale(phrase, rest->end);
  return isOtherNumber ? std::nullopt : rest;
}

/// A number below ten thousand: "five", "two hundred and six", "twenty five hundred", "a hundred".
std::optional<Cardinal> readGroup(const Phrase& phrase, qsizetype at) {
  std::optional<Cardinal> group = readSmallCardinal(phrase, at);
  if (!group && phrase.word(at) == QLatin1String("a") && isHundredOrScale(phrase, at + 1)) {
    group = Cardinal{1, at + 1, true};
  }
  if (!group || group->value == 0 || phrase.kind(group->end) != Kind::hundred) return group;
  const bool isRoundTens = group->value >= 10 && group->value % 10 == 0;
  if (isRoundTens) return std::nullopt;  // "twenty hundred"
  group->factor = group->value;
  group->unit = 100;
  group->value *= 100;
  ++group->end;
  if (const auto rest = readRest(phrase, group->end, true)) {
    group->value += rest->value;
    group->end = rest->end;
    group->factor = 0;
    group->unit = 0;
  }
  return group;
}

/// Digits after "point": "one four", "oh five", "twenty five".
std::optional<Digits> readDecimals(const Phrase& phrase, qsizetype at) {
  const Digits digits = readDigits(phrase, at);
  if (!digits.text.isEmpty()) {
    // "three point five hundred", "one point two fifteen"
    const bool isOther = isNumberWord(phrase, digits.end) && phrase.kind(digits.end) != Kind::scale;
    return isOther ? std::nullopt : std::optional(digits);
  }
  const auto number = readSmallCardinal(phrase, at);
  const bool isOther =
      number && isNumberWord(phrase, number->end) && phrase.kind(number->end) != Kind::scale;
  if (!number || isOther) return std::nullopt;
  return Digits{QString::number(number->value), number->end};
}

/// "at one point two people" has no decimal number, "at one point two percent" has.
bool isPointInTime(const Phrase& phrase, qsizetype at, const Digits& decimals) {
  return decimals.end == at + 3 && phrase.is(at, {"one"}) &&
         phrase.is(at - 1, {"at", "the", "this", "that", "make", "made", "my"}) &&
         phrase.kind(decimals.end) != Kind::scale &&
         !phrase.is(decimals.end, {"percent", "per", "dollars", "euros", "degrees", "to", "times"});
}

/// Reads decimals or "and a half" after the whole number.
void readFraction(const Phrase& phrase, qsizetype at, Amount& amount) {
  const qsizetype next = amount.end;
  if (phrase.is(next, {"point"})) {
    const auto decimals = readDecimals(phrase, next + 1);
    if (decimals && !isPointInTime(phrase, at, *decimals)) {
      amount.digits += u'.' + decimals->text;
      amount.end = decimals->end;
      amount.isWhole = false;
    }
  } else if (phrase.is(next, {"and"}) && phrase.is(next + 1, {"a"}) &&
             phrase.is(next + 2, {"half"}) &&
             phrase.is(next + 3, {"million", "billion", "trillion", "percent"})) {
    amount.digits += QStringLiteral(".5");
    amount.end = next + 3;
    amount.isWhole = false;
  }
}

}  // namespace

std::optional<Cardinal> readSmallCardinal(const Phrase& phrase, qsizetype at) {
  const NumberWord first = phrase.number(at);
  if (first.kind == Kind::digit || first.kind == Kind::teen) return Cardinal{first.value, at + 1};
  if (first.kind != Kind::tens) return std::nullopt;
  const NumberWord second = phrase.number(at + 1);
  if (second.kind == Kind::digit && second.value > 0) {
    return Cardinal{first.value + second.value, at + 2};
  }
  return Cardinal{first.value, at + 1};
}

std::optional<Cardinal> readCardinal(const Phrase& phrase, qsizetype at) {
  Cardinal number{0, at};
  qint64 limit = std::numeric_limits<qint64>::max();
  while (true) {
    const bool isFirst = number.end == at;
    const auto group = readGroup(phrase, number.end);
    if (!group || (!isFirst && (group->value == 0 || group->beginsWithA))) break;
    const NumberWord scale = phrase.number(group->end);
    const bool isScaled = scale.kind == Kind::scale && group->value > 0 && group->value < 1000;
    if (!isScaled) {
      // "two thousand three thousand" are two numbers, and so are "two thousand fifteen hundred".
      const bool isOther = !isFirst && (group->value >= 1000 || scale.kind == Kind::scale ||
                                        phrase.kind(group->end) == Kind::hundred);
      if (isOther) break;
      number.value += group->value;
      number.end = group->end;
      number.beginsWithA |= group->beginsWithA;
      number.factor = isFirst ? group->factor : 0;
      number.unit = isFirst ? group->unit : 0;
      break;
    }
    if (scale.value >= limit) break;
    limit = scale.value;
    number.beginsWithA |= group->beginsWithA;
    number.factor = isFirst ? group->value : 0;
    number.unit = isFirst ? scale.value : 0;
    number.value += group->value * scale.value;
    number.end = group->end + 1;
    if (!phrase.is(number.end, {"and"})) continue;
    if (const auto rest = readRest(phrase, number.end, false)) {
      number.value += rest->value;
      number.end = rest->end;
      number.factor = 0;
      number.unit = 0;
    }
    break;
  }
  if (number.end == at) return std::nullopt;
  return number;
}

Digits readDigits(const Phrase& phrase, qsizetype at) {
  Digits digits{{}, at};
  for (NumberWord word = phrase.number(at); word.kind == Kind::digit || word.kind == Kind::oh;
       word = phrase.number(digits.end)) {
    digits.text += QString::number(word.value);
    ++digits.end;
  }
  return digits;
}

std::optional<Amount> readAmount(const Phrase& phrase, qsizetype at) {
  const auto whole = readCardinal(phrase, at);
  if (!whole) return std::nullopt;
  Amount amount{*whole, groupedDigits(whole->value), {}, whole->end};
  readFraction(phrase, at, amount);
  if (!amount.isWhole) {
    const NumberWord scale = phrase.number(amount.end);
    if (scale.kind == Kind::scale && scale.value >= kMillion) {
      amount.scale = phrase.original(amount.end++);
    }
  } else if (whole->unit >= kMillion) {
    amount.digits = groupedDigits(whole->factor);
    amount.scale = phrase.original(whole->end - 1);
  }
  return amount;
}

bool isNumberWord(const Phrase& phrase, qsizetype at) {
  const Kind kind = phrase.kind(at);
  return kind != Kind::none && kind != Kind::oh && kind != Kind::decade;
}

qsizetype endOfNumberWords(const Phrase& phrase, qsizetype at) {
  while (phrase.kind(at) != Kind::none) ++at;
  return at;
}

QString groupedDigits(qint64 value) {
  static const QLocale english(QLocale::English, QLocale::UnitedStates);
  return english.toString(value);
}

}  // namespace velun
