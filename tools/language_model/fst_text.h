// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "language_model.h"

#include <istream>
#include <ostream>

/// Reads a back-off model of up to three words as OpenFst's fstprint writes it: a state per
/// context, label 0 to the shorter context, the end of the sentence as the final weight.
LanguageModel readFst(std::istream& input, const Vocabulary& vocabulary);

/// Writes it as fstcompile reads it, so that fstconvert can make an FST of the type ngram.
void writeFst(std::ostream& output, const LanguageModel& model, const Vocabulary& vocabulary);

/// Reads an ARPA file with at least three orders, without the words that the vocabulary lacks.
LanguageModel readArpa(std::istream& input, const Vocabulary& vocabulary);
