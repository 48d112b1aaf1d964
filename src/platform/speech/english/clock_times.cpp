// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/english/clock_times.h"

#include "platform/speech/english/amounts.h"
#include "platform/speech/english/count_nouns.h"

namespace velun {

namespace {

struct ClockTime {
  QString digits;  ///< "3", "3:30"
  qsizetype end = 0;
  bool hasMinutes = false;
};

/// "three", "three thirty", "three oh five"
std::optional<ClockTime> readTime(const Phrase& phrase, qsizetype at) {
  const NumberWord hour = phrase.number(at);
  const bool isHour = (hour.kind == NumberWordKind::digit || hour.kind == NumberWordKind::teen) &&
                      hour.value >= 1 && hour.value <= 12;
  if (!isHour) return std::nullopt;
  const QString digits = QString::number(hour.value);
  if (phrase.kind(at + 1) == NumberWordKind::oh) {
    const NumberWord minute = phrase.number(at + 2);
    if (minute.kind != NumberWordKind::digit || minute.value == 0) return std::nullopt;
    return ClockTime{digits + QStringLiteral(":0%1").arg(minute.value), at + 3, true};
  }
  const auto minutes = readSmallCardinal(phrase, at + 1);
  if (!minutes) return ClockTime{digits, at + 1};
  if (minutes->value < 10 || minutes->value > 59) return std::nullopt;
  return ClockTime{digits + u':' + QString::number(minutes->value), minutes->end, true};
}

struct HalfOfDay {
  QString text;  ///< "a.m." or "p.m.", or empty
  qsizetype end = 0;
};

HalfOfDay readHalfOfDay(const Phrase& phrase, qsizetype at) {
  QString letters = phrase.word(at);
  qsizetype end = at + 1;
  if (phrase.is(at, {"a", "p"}) && phrase.is(at + 1, {"m"})) {
    letters += u'm';
    ++end;
  }
  letters.remove(u'.');
  if (letters == QLatin1String("am")) return {QStringLiteral("a.m."), end};
  if (letters == QLatin1String("pm")) return {QStringLiteral("p.m."), end};
  return {{}, at};
}

/// "half past ten", "quarter to three"
bool followsPartOfHour(const Phrase& phrase, qsizetype at) {
  if (!phrase.is(at - 1, {"past", "to", "of", "after", "till"})) return false;
  return phrase.is(at - 2, {"half"}) ||
         (phrase.is(at - 2, {"quarter"}) && phrase.is(at - 3, {"", "a", "at", "by", "around"}));
}

/// "at ten fifteen", but neither "at ten fifteen dollars" nor "at ten fifteen hundred".
bool isPlainTime(const Phrase& phrase, qsizetype at, const ClockTime& time) {
  return time.hasMinutes && phrase.is(at - 1, {"at", "until", "till", "around"}) &&
         !isNumberWord(phrase, time.end) && !isCountNoun(phrase, time.end) &&
         !phrase.is(time.end, {"point"});
}

}  // namespace

std::optional<Rewriting> writeClockTime(const Phrase& phrase, qsizetype at) {
  const auto time = readTime(phrase, at);
  if (!time) return std::nullopt;
  const bool staysInWords = followsPartOfHour(phrase, at) || phrase.is(time->end, {"o'clock"}) ||
                            (!time->hasMinutes && phrase.is(time->end, {"past"}));
  if (staysInWords) return Rewriting{time->end, {}};
  if (const HalfOfDay half = readHalfOfDay(phrase, time->end); !half.text.isEmpty()) {
    return Rewriting{half.end, {{at, time->end, time->digits}, {time->end, half.end, half.text}}};
  }
  if (phrase.is(time->end, {"to", "until", "till", "through", "or", "and"})) {
    if (const auto last = readTime(phrase, time->end + 1)) {
      const HalfOfDay half = readHalfOfDay(phrase, last->end);
      if (!half.text.isEmpty()) {
        return Rewriting{half.end,
                         {{at, time->end, time->digits},
                          {time->end + 1, last->end, last->digits},
                          {last->end, half.end, half.text}}};
      }
    }
  }
  if (isPlainTime(phrase, at, *time)) {
    return Rewriting{time->end, {{at, time->end, time->digits}}};
  }
  return std::nullopt;
}

}  // namespace velun
