// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <QString>
#include <span>
#include <vector>

namespace velun {

/// One word of a phrase that goes on, as far as it matters where the phrase may be cut. In writing
/// without blanks every character is a word.
struct PhraseWord {
  qsizetype begin = 0;  ///< its place in the text, with the marks after it
  qsizetype end = 0;
  bool endsSentence = false;
  bool hasMark = false;   ///< a mark follows it, such as a comma
  bool isLetter = false;  ///< it is one character in writing without blanks
};

/// How many words of a phrase, from the first, can become lines although the phrase goes on: those
/// of whole sentences, or a part of a very long sentence. As many words as `undecided` after them
/// are needed to be sure; in writing without blanks twice as many characters.
std::size_t countFinishedWords(std::span<const PhraseWord> words, std::size_t undecided);

/// The words of a text in a language ("en"). Abbreviations and decimals end no sentence.
std::vector<PhraseWord> phraseWords(const QString& text, const QString& language);

}  // namespace velun
