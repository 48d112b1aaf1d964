// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/english/caption_word.h"

#include <cstddef>

namespace velun {

/// Seconds between two words from which the speaker pauses. Measured on 1,982 gaps of 97 recordings
/// (docs/recognition.md): a pause of 0.2 s follows 5 % of the words inside of a sentence, 61 % of
/// the commas and 73 % of the sentence ends; one of 0.5 s follows 2, 28 and 64 %.
constexpr double kShortPause = 0.2;
constexpr double kLongPause = 0.5;

/// The words as the punctuation model reads them: in lower case and without marks, with "|" for a
/// short pause and "+" for a long one.
QString textForPunctuation(const CaptionWords& words);

/// Takes case and marks from `punctuated`, the reply of the punctuation model to the text of
/// `words`. Returns false, and changes nothing, if its words are not the same.
bool takePunctuation(CaptionWords& words, const QString& punctuated);

/// Removes the marks of the last words, from `begin` on, that too few words and no long pause
/// follow: the model is often wrong about them (docs/recognition.md).
void removeUndecidedMarks(CaptionWords& words, std::size_t begin);

/// Whether the word, in any case, is no name and has a capital only where a sentence begins.
bool isFunctionWord(const QString& word);

/// Whether a sentence ends after the word.
bool endsSentence(const CaptionWord& word);

/// Makes marks and capitals agree, from the word at `begin` on: a sentence begins with a capital,
/// and "the" or "and" has one only there. The first of all words begins a sentence if
/// `beginsSentence`.
void agreeOnCapitals(CaptionWords& words, std::size_t begin, bool beginsSentence);

}  // namespace velun
