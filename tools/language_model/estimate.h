// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "language_model.h"

#include <istream>

/// Sentences of known words, kUnknown between them where a word is not in the vocabulary.
using Sentences = std::vector<std::vector<Word>>;

/// Reads one sentence per line and adds the marks of its beginning and end.
Sentences readSentences(std::istream& input, const Vocabulary& vocabulary);

/// Interpolated Kneser-Ney with three discounts per order (Chen and Goodman 1999, section 4.1.6),
/// without the word sequences that have an unknown word.
LanguageModel estimated(const Sentences& sentences, const Vocabulary& vocabulary);

/// The perplexity of the words and ends of the sentences; unknown words and the words whose context
/// has one are not counted.
double perplexity(const LanguageModel& model, const Sentences& sentences);
