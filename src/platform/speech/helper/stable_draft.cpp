// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/stable_draft.h"

#include <algorithm>
#include <cstddef>

namespace velun {

namespace {

constexpr std::size_t kGuesses = 4;
/// So that something is shown soon after speech begins.
constexpr std::size_t kEarlyGuesses = 2;
constexpr std::ptrdiff_t kEarlyWords = 2;

/// The number of words at the beginning that are the same in both.
std::ptrdiff_t countSame(const StableDraft::Words& a, const StableDraft::Words& b) {
  const auto isSame = [](const RecognizedWord& one, const RecognizedWord& other) {
    return one.text == other.text;
  };
  return std::mismatch(a.begin(), a.end(), b.begin(), b.end(), isSame).first - a.begin();
}

/// How many words at the beginning of the newest guess are the same in the newest `count` guesses.
std::ptrdiff_t countStable(const std::deque<StableDraft::Words>& guesses, std::size_t count) {
  if (guesses.size() < count) return 0;
  const StableDraft::Words& newest = guesses.back();
  auto same = static_cast<std::ptrdiff_t>(newest.size());
  for (std::size_t i = guesses.size() - count; i < guesses.size(); ++i) {
    same = std::min(same, countSame(newest, guesses[i]));
  }
  return same;
}

}  // namespace

const StableDraft::Words& StableDraft::update(const Words& guess) {
  guesses_.push_back(guess);
  if (guesses_.size() > kGuesses) guesses_.pop_front();
  const std::ptrdiff_t early = std::min(kEarlyWords, countStable(guesses_, kEarlyGuesses));
  const std::ptrdiff_t same = std::max(early, countStable(guesses_, kGuesses));
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
