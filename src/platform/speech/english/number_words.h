// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace velun {

/// What an English word can be in a number.
enum class NumberWordKind : quint8 {
  none,
  digit,  ///< "zero" to "nine"
  oh,     ///< "oh" or "o": the digit 0, or no number at all
  teen,   ///< "ten" to "nineteen"
  tens,   ///< "twenty" to "ninety"
  hundred,
  scale,    ///< "thousand" to "trillion"
  ordinal,  ///< "first" to "ninetieth", and "hundredth" to "billionth"
  decade,   ///< "tens" to "nineties", and "hundreds"
};

/// The kind and the value of a word ("eighties": 80).
struct NumberWord {
  NumberWordKind kind = NumberWordKind::none;
  qint64 value = 0;
};

/// Finds what a lower-case word can be in a number.
NumberWord numberWord(const QString& word);

}  // namespace velun
