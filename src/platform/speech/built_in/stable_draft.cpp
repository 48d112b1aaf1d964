// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/built_in/stable_draft.h"

#include <algorithm>

namespace velun {

namespace {

constexpr std::size_t kGuesses = 3;

}  // namespace

QStringList StableDraft::update(const QStringList& guess) {
  guesses_.push_back(guess);
  if (guesses_.size() > kGuesses) guesses_.pop_front();
  if (guesses_.size() < kGuesses) return shown_;
  qsizetype same = guess.size();
  for (const QStringList& earlier : guesses_) {
    const auto difference =
        std::mismatch(guess.begin(), guess.end(), earlier.begin(), earlier.end());
    same = std::min(same, static_cast<qsizetype>(difference.first - guess.begin()));
  }
  const QStringList stable = guess.mid(0, same);
  // Shown words stay while the guesses differ; only other stable words replace them.
  const bool isShown =
      stable.size() <= shown_.size() && std::equal(stable.begin(), stable.end(), shown_.begin());
  if (!isShown) shown_ = stable;
  return shown_;
}

void StableDraft::reset() {
  guesses_.clear();
  shown_.clear();
}

}  // namespace velun
