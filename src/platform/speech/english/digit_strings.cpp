// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/english/digit_strings.h"

#include "platform/speech/english/amounts.h"

namespace velun {

namespace {

/// "one two three", "three two one", "one two one two", "five five five"
bool isCounting(const QString& digits) {
  int up = 0;
  int down = 0;
  int alternating = 0;
  for (qsizetype i = 1; i < digits.size(); ++i) {
    const int step = digits[i].unicode() - digits[i - 1].unicode();
    up += step == 1 ? 1 : 0;
    down += step == -1 ? 1 : 0;
    alternating += i < 2 || digits[i] == digits[i - 2] ? 1 : 0;
  }
  const qsizetype steps = digits.size() - 1;
  return up == steps || down == steps || alternating == steps || up >= 4;
}

bool isSaidDigitByDigit(const Phrase& phrase, qsizetype at, const Digits& digits) {
  const bool isNamed =
      phrase.is(at - 1, {"number", "code", "room", "route", "highway", "interstate", "flight",
                         "extension", "channel", "section", "form", "pin", "error"});
  if (isNamed) return true;
  bool hasOh = false;
  for (qsizetype i = at + 1; i < digits.end; ++i) {
    hasOh = hasOh || phrase.kind(i) == NumberWordKind::oh;
  }
  const bool endsInOh = phrase.kind(digits.end - 1) == NumberWordKind::oh;
  if (digits.text.size() == 3) {
    return digits.text == QLatin1String("911") || (hasOh && !endsInOh);
  }
  return !isCounting(digits.text);
}

/// With hyphens if it has the length of a phone number.
QString written(const QString& digits) {
  const auto part = [&digits](qsizetype begin, qsizetype count) {
    return digits.mid(begin, count);
  };
  if (digits.size() == 7) return part(0, 3) + u'-' + part(3, 4);
  if (digits.size() == 10) return part(0, 3) + u'-' + part(3, 3) + u'-' + part(6, 4);
  if (digits.size() == 11 && digits.front() == u'1') {
    return QStringLiteral("1-") + part(1, 3) + u'-' + part(4, 3) + u'-' + part(7, 4);
  }
  return digits;
}

}  // namespace

std::optional<Rewriting> writeDigitString(const Phrase& phrase, qsizetype at) {
  if (phrase.kind(at) != NumberWordKind::digit) return std::nullopt;
  const Digits digits = readDigits(phrase, at);
  if (digits.text.size() < 3) return std::nullopt;
  if (isNumberWord(phrase, digits.end) || !isSaidDigitByDigit(phrase, at, digits)) {
    return Rewriting{endOfNumberWords(phrase, digits.end), {}};
  }
  return Rewriting{digits.end, {{at, digits.end, written(digits.text)}}};
}

}  // namespace velun
