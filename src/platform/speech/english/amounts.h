// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/english/phrase.h"

#include <optional>

namespace velun {

/// A whole number in words: "one hundred and five", "a thousand", "twenty five hundred".
struct Cardinal {
  qint64 value = 0;
  qsizetype end = 0;
  bool beginsWithA = false;
  /// For a multiple of one hundred, thousand or more: the number before that word, and its value.
  qint64 factor = 0;
  qint64 unit = 0;
};

/// A number below one hundred without "hundred" or "oh".
std::optional<Cardinal> readSmallCardinal(const Phrase& phrase, qsizetype at);

/// The longest whole number that begins at a position.
std::optional<Cardinal> readCardinal(const Phrase& phrase, qsizetype at);

/// The digits of words such as "five oh two"; "oh" and "o" are the digit 0.
struct Digits {
  QString text;
  qsizetype end = 0;
};
Digits readDigits(const Phrase& phrase, qsizetype at);

/// A number as it is written: "1,250", "3.5", "3 million".
struct Amount {
  Cardinal whole;
  QString digits;
  QString scale;  ///< "million" and the like, as it came; empty if written in digits
  qsizetype end = 0;
  bool isWhole = true;

  /// Whether it is one of the numbers that stay words in running text.
  bool isSmall() const { return isWhole && scale.isEmpty() && whole.value < 10; }
  /// "a hundred", "a thousand" and "a million".
  bool isRoundWithA() const { return whole.beginsWithA && isWhole && whole.factor == 1; }
  QString text() const { return scale.isEmpty() ? digits : digits + u' ' + scale; }
};

/// The number that begins at a position, with decimals, "and a half" and "million".
std::optional<Amount> readAmount(const Phrase& phrase, qsizetype at);

/// Whether a word of a number stands at a position.
bool isNumberWord(const Phrase& phrase, qsizetype at);

/// The end of the number words that begin at a position.
qsizetype endOfNumberWords(const Phrase& phrase, qsizetype at);

/// A whole number with separators: "12,500".
QString groupedDigits(qint64 value);

}  // namespace velun
