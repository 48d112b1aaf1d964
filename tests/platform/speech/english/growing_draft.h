// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/english/english_text.h"

#include <algorithm>

namespace velun::test {

/// Sets the times of words to their positions, so that the words of a result tell what they were
/// joined from.
inline CaptionWords numbered(CaptionWords words) {
  for (std::size_t i = 0; i < words.size(); ++i) {
    words[i].begin = static_cast<double>(i + 1);
    words[i].end = static_cast<double>(i + 1);
  }
  return words;
}

/// Whether the draft has the beginning of the later text, up to the last word that is not as it was
/// spoken.
inline bool keepsWrittenWords(const CaptionWords& spoken, const CaptionWords& draft,
                              const CaptionWords& later) {
  std::size_t written = draft.size();
  while (written > 0) {
    const CaptionWord& word = draft[written - 1];
    const auto position = static_cast<std::size_t>(word.begin) - 1;
    if (word.begin != word.end || word.text.toLower() != spoken[position].text.toLower()) break;
    --written;
  }
  const auto end = draft.begin() + static_cast<std::ptrdiff_t>(written);
  // A mark may follow later.
  const auto isSame = [](const CaptionWord& left, const CaptionWord& right) {
    return (right.text + right.marks).startsWith(left.text);
  };
  return written <= later.size() && std::equal(draft.begin(), end, later.begin(), isSame);
}

/// Writes the words as drafts that grow word by word and then as final text. Returns whether no
/// written word ever changes.
inline bool isStable(const CaptionWords& words, bool numbersAsDigits = true) {
  const CaptionWords spoken = numbered(words);
  CaptionWords before;
  for (std::size_t count = 1; count <= spoken.size() + 1; ++count) {
    const bool isFinal = count > spoken.size();
    const auto end = spoken.begin() + static_cast<std::ptrdiff_t>(std::min(count, spoken.size()));
    const CaptionWords text =
        writeEnglish(CaptionWords(spoken.begin(), end), {numbersAsDigits, !isFinal});
    if (!keepsWrittenWords(spoken, before, text)) return false;
    before = text;
  }
  return true;
}

}  // namespace velun::test
