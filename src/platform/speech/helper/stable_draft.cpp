// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/stable_draft.h"

#include <algorithm>
#include <cstddef>

namespace velun {

namespace {

constexpr std::size_t kGuesses = 3;

/// The number of words at the beginning that are the same in both.
std::ptrdiff_t countSame(const StableDraft::Words& a, const StableDraft::Words& b) {
  const auto isSame = [](const RecognizedWord& one, const RecognizedWord& other) {
    return one.text == other.text;
  };
  return std::mismatch(a.begin(), a.end(), b.begin(), b.end(), isSame).first - a.begin();
}

}  // namespace

const StableDraft::Words& StableDraft::update(const Words& guess) {
  guesses_.push_back(guess);
  if (guesses_.size() > kGuesses) guesses_.pop_front();
  if (guesses_.size() < kGuesses) return shown_;
  auto same = static_cast<std::ptrdiff_t>(guess.size());
  for (const Words& earlier : guesses_) same = std::min(same, countSame(guess, earlier));
  const Words stable(guess.begin(), guess.begin() + same);
  // Shown words stay while the guesses differ; only other stable words replace them.
  const bool isShown = stable.size() <= shown_.size() && countSame(stable, shown_) == same;
  if (!isShown) shown_ = stable;
  return shown_;
}

void StableDraft::reset() {
  guesses_.clear();
  shown_.clear();
}

}  // namespace velun
