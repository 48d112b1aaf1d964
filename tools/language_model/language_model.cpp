// SPDX-License-Identifier: GPL-3.0-or-later
#include "language_model.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <stdexcept>

Vocabulary::Vocabulary(const std::string& path) {
  std::ifstream file(path);
  std::string word;
  for (Word number = 0; file >> word >> number;) {
    if (word.front() == '<' || word.front() == '#') continue;
    if (number >= texts_.size()) texts_.resize(number + 1);
    texts_[number] = word;
    numbers_[word] = number;
  }
  if (numbers_.empty()) throw std::runtime_error(path + " has no words");
  begin_ = static_cast<Word>(texts_.size());
  if (size() > 1U << kWordBits) throw std::runtime_error(path + " has too many words");
  texts_.insert(texts_.end(), {"<s>", "</s>"});
}

Word Vocabulary::find(const std::string& word) const {
  const auto found = numbers_.find(word);
  return found == numbers_.end() ? kUnknown : found->second;
}

void LanguageModel::sort() {
  for (auto& each : entries_) {
    std::sort(each.begin(), each.end(),
              [](const Entry& a, const Entry& b) { return a.key < b.key; });
  }
}

const Entry* LanguageModel::find(int words, Key key) const {
  const auto& all = entries(words);
  if (words == 1) return key < all.size() ? &all[key] : nullptr;
  const auto found = std::lower_bound(
      all.begin(), all.end(), key, [](const Entry& each, Key wanted) { return each.key < wanted; });
  return found != all.end() && found->key == key ? &*found : nullptr;
}

double LanguageModel::probability(int words, Key key) const {
  if (words == 1) return entries(1)[key].probability;
  if (const Entry* found = find(words, key)) return found->probability;
  const Entry* context = find(words - 1, contextOf(key));
  return (context ? context->backOff : 0) + probability(words - 1, shortened(words, key));
}

void LanguageModel::normalise() {
  constexpr double kLeast = 1e-6;  // of the probability; the rest of rounding
  for (int words = 2; words <= kOrder; ++words) {
    auto& contexts = entries(words - 1);
    for (Entry& each : contexts) each.backOff = 0;
    const auto& all = entries(words);
    for (auto first = all.begin(); first != all.end();) {
      const Key context = contextOf(first->key);
      double longer = 0, shorter = 0;
      auto last = first;
      for (; last != all.end() && contextOf(last->key) == context; ++last) {
        longer += std::exp(last->probability);
        shorter += std::exp(probability(words - 1, shortened(words, last->key)));
      }
      const auto found = find(words - 1, context);
      if (!found) throw std::runtime_error("an entry lacks its context");
      contexts[static_cast<std::size_t>(found - contexts.data())].backOff = static_cast<float>(
          std::log(std::max(1 - longer, kLeast) / std::max(1 - shorter, kLeast)));
      first = last;
    }
  }
}
