// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/transcription_result.h"

#include <deque>
#include <vector>

namespace velun {

/// Turns unstable guesses into a stable draft: shows the words that were equal in the last four
/// guesses, 100 ms apart, and the first two words of a phrase when they were equal in the last two.
/// A word is replaced only by another such word. Of the words shown 8 % change later; with two
/// guesses for all words, 30 % (docs/recognition.md).
class StableDraft {
 public:
  using Words = std::vector<RecognizedWord>;

  /// The words to show after one more guess. Only their texts are compared.
  const Words& update(const Words& guess);

  /// Starts a new phrase.
  void reset();

 private:
  std::deque<Words> guesses_;
  Words shown_;
};

}  // namespace velun
