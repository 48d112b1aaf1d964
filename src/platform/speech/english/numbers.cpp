// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/english/numbers.h"

#include "platform/speech/english/amounts.h"
#include "platform/speech/english/clock_times.h"
#include "platform/speech/english/digit_strings.h"
#include "platform/speech/english/months.h"
#include "platform/speech/english/ordinals.h"
#include "platform/speech/english/years.h"

namespace velun {

namespace {

/// An amount with its unit.
struct Measure {
  Amount amount;
  qsizetype end = 0;  ///< after the unit
  QString before;     ///< "$"
  QString after;      ///< "%", or the cents of "$5.20"

  bool hasUnit() const { return !before.isEmpty() || !after.isEmpty(); }
  bool needsDigits() const { return hasUnit() || (!amount.isSmall() && !amount.isRoundWithA()); }
};

void readCents(const Phrase& phrase, Measure& measure) {
  if (!measure.amount.isWhole || !measure.amount.scale.isEmpty()) return;
  const bool hasAnd = phrase.is(measure.end, {"and"});
  const auto cents = readSmallCardinal(phrase, hasAnd ? measure.end + 1 : measure.end);
  if (!cents || !phrase.is(cents->end, {"cents", "cent"})) return;
  measure.after = QStringLiteral(".%1").arg(cents->value, 2, 10, QLatin1Char('0'));
  measure.end = cents->end + 1;
}

void readUnit(const Phrase& phrase, Measure& measure) {
  const qsizetype next = measure.end;
  if (phrase.is(next, {"dollars", "dollar"})) {
    measure.before = u'$';
    measure.end = next + 1;
    if (phrase.word(next) == QLatin1String("dollars")) readCents(phrase, measure);
  } else if (phrase.is(next, {"euros", "euro"})) {
    measure.before = u'€';
    measure.end = next + 1;
  } else if (measure.amount.scale.isEmpty() && phrase.is(next, {"percent"})) {
    measure.after = u'%';
    measure.end = next + 1;
  } else if (measure.amount.scale.isEmpty() && phrase.is(next, {"per"}) &&
             phrase.is(next + 1, {"cent"})) {
    measure.after = u'%';
    measure.end = next + 2;
  }
}

std::optional<Measure> readMeasure(const Phrase& phrase, qsizetype at) {
  const auto amount = readAmount(phrase, at);
  if (!amount) return std::nullopt;
  Measure measure{*amount, amount->end, {}, {}};
  readUnit(phrase, measure);
  return measure;
}

/// Adds the words of a measure, with "million" as a word of its own.
void append(std::vector<Piece>& pieces, qsizetype at, const Measure& measure) {
  const Amount& amount = measure.amount;
  if (amount.scale.isEmpty()) {
    pieces.push_back({at, measure.end, measure.before + amount.digits + measure.after});
  } else {
    pieces.push_back({at, amount.end - 1, measure.before + amount.digits});
    pieces.push_back({amount.end - 1, measure.end, amount.scale});
  }
}

/// The position after "to", "or", "through", "out of", or "and" after "between"; else nullopt.
std::optional<qsizetype> readRangeWord(const Phrase& phrase, qsizetype begin, qsizetype at) {
  if (phrase.is(at, {"to", "or", "through"})) return at + 1;
  if (phrase.is(at, {"out"}) && phrase.is(at + 1, {"of"})) return at + 2;
  if (phrase.is(at, {"and"}) && phrase.is(begin - 1, {"between"})) return at + 1;
  return std::nullopt;
}

/// "two or three hundred" may begin with two or with two hundred.
bool sharesUnit(const Amount& first, const Amount& last) {
  return last.scale.isEmpty() && last.whole.factor > first.whole.value && first.whole.value > 0 &&
         first.whole.value < 100;
}

/// "five to ten percent": both numbers in digits, or both in words.
std::optional<Rewriting> writeRange(const Phrase& phrase, qsizetype at, const Measure& first) {
  if (first.hasUnit() || !first.amount.scale.isEmpty()) return std::nullopt;
  const auto next = readRangeWord(phrase, at, first.end);
  if (!next) return std::nullopt;
  Measure from = first;
  const auto to = readMeasure(phrase, *next);
  if (!to || isNumberWord(phrase, to->end) || to->amount.isRoundWithA()) return std::nullopt;
  if (sharesUnit(from.amount, to->amount)) return Rewriting{to->end, {}};
  if (!from.needsDigits() && !to->needsDigits()) return std::nullopt;
  from.before = to->before;
  Rewriting range{to->end, {}};
  append(range.pieces, at, from);
  append(range.pieces, *next, *to);
  return range;
}

/// "half a million"
bool isPartOf(const Phrase& phrase, qsizetype at) {
  return phrase.is(at - 1, {"half", "quarter"}) ||
         (phrase.is(at - 1, {"of"}) && phrase.is(at - 2, {"quarter", "third", "half", "fraction"}));
}

std::optional<Rewriting> writeAmount(const Phrase& phrase, qsizetype at) {
  const auto measure = readMeasure(phrase, at);
  if (!measure) return std::nullopt;
  const Amount& amount = measure->amount;
  if (amount.whole.beginsWithA && isPartOf(phrase, at)) return Rewriting{measure->end, {}};
  const bool isDay = amount.isWhole && amount.whole.value > 0 && amount.whole.value <= 31 &&
                     isMonth(phrase, at - 1) && !measure->hasUnit();
  if (isDay && (phrase.word(measure->end).isEmpty() || writeYear(phrase, measure->end))) {
    return Rewriting{measure->end, {{at, measure->end, amount.digits}}};
  }
  // Two numbers side by side: "ten fifteen minutes".
  if (!measure->hasUnit() && isNumberWord(phrase, measure->end)) {
    return Rewriting{endOfNumberWords(phrase, measure->end), {}};
  }
  if (const auto range = writeRange(phrase, at, *measure)) return range;
  Rewriting result{measure->end, {}};
  if (!measure->needsDigits()) return result;
  // In "a hundred dollar bill" the article belongs to the bill; "a million dollar question" is an
  // expression of its own.
  const bool isAttribute = amount.whole.beginsWithA && phrase.is(amount.end, {"dollar", "euro"});
  if (isAttribute && amount.isRoundWithA() && !amount.scale.isEmpty()) return result;
  append(result.pieces, isAttribute ? at + 1 : at, *measure);
  return result;
}

/// "point five percent" as "0.5%"
std::optional<Rewriting> writeBareDecimal(const Phrase& phrase, qsizetype at) {
  if (!phrase.is(at, {"point"}) || isNumberWord(phrase, at - 1)) return std::nullopt;
  const Digits digits = readDigits(phrase, at + 1);
  if (digits.text.isEmpty() || !phrase.is(digits.end, {"percent"})) return std::nullopt;
  return Rewriting{digits.end + 1,
                   {{at, digits.end + 1, QStringLiteral("0.") + digits.text + u'%'}}};
}

struct FixedExpression {
  std::initializer_list<const char*> words;
  const char16_t* text;
};

std::optional<Rewriting> writeFixedExpression(const Phrase& phrase, qsizetype at) {
  static const std::initializer_list<FixedExpression> expressions = {
      {{"twenty", "four", "seven"}, u"24/7"},
      {{"nine", "eleven"}, u"9/11"},
      {{"fifty", "fifty"}, u"50/50"},
  };
  for (const FixedExpression& expression : expressions) {
    qsizetype end = at;
    for (const char* word : expression.words) {
      if (end < at || !phrase.is(end, {word})) {
        end = -1;
        break;
      }
      ++end;
    }
    if (end > at && phrase.kind(end) == NumberWordKind::none) {
      return Rewriting{end, {{at, end, QString::fromUtf16(expression.text)}}};
    }
  }
  const bool isSight = phrase.is(at, {"twenty"}) && phrase.is(at + 1, {"twenty"}) &&
                       phrase.is(at + 2, {"vision", "hindsight"});
  if (isSight) return Rewriting{at + 2, {{at, at + 2, QStringLiteral("20/20")}}};
  return std::nullopt;
}

}  // namespace

std::optional<Rewriting> writeNumber(const Phrase& phrase, qsizetype at) {
  if (phrase.is(at, {"point"})) return writeBareDecimal(phrase, at);
  const NumberWordKind kind = phrase.kind(at);
  const bool isArticle = phrase.word(at) == QLatin1String("a");
  if (kind == NumberWordKind::none && !isArticle) return std::nullopt;
  for (const auto rule : {writeClockTime, writeFixedExpression, writeDigitString, writeYear,
                          writeOrdinal, writeAmount}) {
    if (const auto result = rule(phrase, at)) return result;
  }
  if (isArticle) return std::nullopt;
  // "hundred", "thousand" or "oh" without a number before it.
  return Rewriting{endOfNumberWords(phrase, at), {}};
}

}  // namespace velun
