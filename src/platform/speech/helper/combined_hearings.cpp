// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/combined_hearings.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <optional>

namespace velun {

namespace {

using Words = std::vector<RecognizedWord>;

/// The second hearing knows the voice, so it is surer than it says.
constexpr double kSecondIsSurer = 0.1;
/// How sure a hearing counts that has no word where the other one has.
constexpr double kNoWordConfidence = 0.6;

/// Seconds. A word that ends so close to the end of what was heard may be the beginning of another.
constexpr double kCutWord = 0.2;

/// Edit distances between the first words of two hearings.
class Distances {
 public:
  Distances(const Words& first, const Words& second)
      : width_(second.size() + 1), values_((first.size() + 1) * width_) {
    for (std::size_t i = 0; i <= first.size(); ++i) {
      for (std::size_t j = 0; j <= second.size(); ++j) {
        std::size_t& value = values_[i * width_ + j];
        value = std::max(i, j);
        if (i == 0 || j == 0) continue;
        const std::size_t differs = first[i - 1].text == second[j - 1].text ? 0 : 1;
        value = std::min({at(i - 1, j - 1) + differs, at(i - 1, j) + 1, at(i, j - 1) + 1});
      }
    }
  }

  std::size_t at(std::size_t i, std::size_t j) const { return values_[i * width_ + j]; }

 private:
  std::size_t width_;
  std::vector<std::size_t> values_;
};

/// The word of one place; null for none.
const RecognizedWord* surer(const RecognizedWord* first, const RecognizedWord* second) {
  const double inFirst = first ? first->confidence : kNoWordConfidence;
  const double inSecond = (second ? second->confidence : kNoWordConfidence) + kSecondIsSurer;
  return inFirst > inSecond ? first : second;
}

}  // namespace

Words combinedHearings(const Words& first, const Words& second) {
  const Distances distances(first, second);
  Words words;
  std::size_t i = first.size();
  std::size_t j = second.size();
  while (i > 0 || j > 0) {
    const std::size_t here = distances.at(i, j);
    const bool hasBoth = i > 0 && j > 0;
    const bool isSame = hasBoth && first[i - 1].text == second[j - 1].text;
    const bool isPair = hasBoth && distances.at(i - 1, j - 1) + (isSame ? 0 : 1) == here;
    const bool isInFirst = isPair || (i > 0 && (j == 0 || distances.at(i - 1, j) + 1 == here));
    const RecognizedWord* one = isInFirst ? &first[--i] : nullptr;
    const RecognizedWord* other = isPair || !isInFirst ? &second[--j] : nullptr;
    const RecognizedWord* word = isSame && isPair ? other : surer(one, other);
    if (word) words.push_back(*word);
  }
  std::reverse(words.begin(), words.end());
  // The two hearings differ a little in their times too.
  for (std::size_t k = 1; k < words.size(); ++k) {
    words[k].start = std::max(words[k].start, words[k - 1].end);
    words[k].end = std::max(words[k].end, words[k].start);
  }
  return words;
}

Words completedHearing(Words second, const Words& first, double seconds) {
  std::erase_if(second,
                [seconds](const RecognizedWord& word) { return word.end > seconds - kCutWord; });
  const double end = second.empty() ? 0 : second.back().end;
  std::copy_if(first.begin(), first.end(), std::back_inserter(second),
               [end](const RecognizedWord& word) { return word.start + word.end > 2 * end; });
  return second;
}

}  // namespace velun
