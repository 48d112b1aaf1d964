// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/english/caption_word.h"

namespace velun {

struct EnglishTextOptions {
  /// Write numbers in digits.
  bool numbersAsDigits = true;
  /// More words may follow: a draft. Words at the end stay as they are until the words that decide
  /// about them have come, so that a number never changes back.
  bool mayContinue = false;
};

/// Writes what an English recognizer gives (numbers and spelled letters as words, unknown words as
/// "[unk]") as people write captions: digits where they are usual, "I" in upper case, "USA". Joins
/// no words across a punctuation mark or a pause. The words keep their case and marks; a joined
/// word has the marks of its last word. Takes microseconds; any thread.
CaptionWords writeEnglish(const CaptionWords& words, EnglishTextOptions options);

}  // namespace velun
