// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/linux/built_in/stable_draft.h"

#include <algorithm>

namespace velun {

namespace {

constexpr std::size_t kGuesses = 3;

}  // namespace

QStringList StableDraft::update(const QStringList& guess) {
  guesses_.push_back(guess);
  if (guesses_.size() > kGuesses) guesses_.pop_front();
  if (guesses_.size() < kGuesses) return {};
  qsizetype same = guess.size();
  for (const QStringList& earlier : guesses_) {
    const auto difference =
        std::mismatch(guess.begin(), guess.end(), earlier.begin(), earlier.end());
    same = std::min(same, static_cast<qsizetype>(difference.first - guess.begin()));
  }
  return guess.mid(0, same);
}

void StableDraft::reset() {
  guesses_.clear();
}

}  // namespace velun
