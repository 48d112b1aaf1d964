// SPDX-License-Identifier: GPL-3.0-or-later
#include "estimate.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <sstream>

namespace {

struct Count {
  Key key = 0;
  std::uint32_t count = 0;
};
using Counts = std::vector<Count>;

Counts counted(std::vector<Key> keys) {
  std::sort(keys.begin(), keys.end());
  Counts counts;
  for (const Key key : keys) {
    if (counts.empty() || counts.back().key != key) counts.push_back({key, 0});
    ++counts.back().count;
  }
  return counts;
}

/// The keys of all sequences of `words` known words.
std::vector<Key> sequences(const Sentences& sentences, std::size_t words) {
  std::vector<Key> keys;
  for (const auto& sentence : sentences) {
    for (std::size_t i = 0; i + words <= sentence.size(); ++i) {
      Key key = 0;
      bool isKnown = true;
      for (std::size_t j = i; j < i + words; ++j) {
        isKnown &= sentence[j] != kUnknown;
        key = extended(key, sentence[j]);
      }
      if (isKnown) keys.push_back(key);
    }
  }
  return keys;
}

/// What is subtracted from counts of 1, of 2, and of 3 and more. In a small text, where the formula
/// fails, a tenth at least, so that unseen words keep a share.
std::array<double, 3> discounts(const Counts& counts) {
  std::array<double, 5> number{};
  for (const Count& each : counts) {
    if (each.count < number.size()) ++number[each.count];
  }
  const double y = number[1] / std::max(number[1] + 2 * number[2], 1.0);
  std::array<double, 3> discounts{};
  for (std::size_t i = 1; i <= discounts.size(); ++i) {
    const double times = static_cast<double>(i);
    const double discount = times - (times + 1) * y * number[i + 1] / std::max(number[i], 1.0);
    discounts[i - 1] = std::clamp(discount, 0.1, times);
  }
  return discounts;
}

/// Adds the entries of `words` words to a model that has the shorter ones.
void addEntries(LanguageModel& model, int words, const Counts& counts, Word wordCount) {
  const auto discount = discounts(counts);
  auto& entries = model.entries(words);
  if (words == 1) entries.resize(wordCount);
  for (auto first = counts.begin(); first != counts.end();) {
    const Key context = contextOf(first->key);
    double total = 0, taken = 0;
    auto last = first;
    for (; last != counts.end() && contextOf(last->key) == context; ++last) {
      total += last->count;
      taken += discount[std::min(last->count, 3U) - 1];
    }
    const double rest = taken / total;
    for (; first != last; ++first) {
      const double own = (first->count - discount[std::min(first->count, 3U) - 1]) / total;
      const double shorter =
          words == 1 ? 1.0 / wordCount
                     : std::exp(model.probability(words - 1, shortened(words, first->key)));
      const Entry entry{first->key, static_cast<float>(std::log(own + rest * shorter)), 0};
      if (words == 1)
        entries[first->key] = entry;
      else
        entries.push_back(entry);
    }
    if (words == 1) {
      for (Word word = 0; word < wordCount; ++word) {
        if (entries[word].probability == 0) {
          entries[word] = {word, static_cast<float>(std::log(rest / wordCount)), 0};
        }
      }
    } else if (const Entry* found = model.find(words - 1, context)) {
      auto& contexts = model.entries(words - 1);
      contexts[static_cast<std::size_t>(found - contexts.data())].backOff =
          static_cast<float>(std::log(rest));
    }
  }
}

/// The number of different words before each sequence in `own`; at least 1, because an unknown word
/// may be the only one. Sequences at the beginning of a sentence keep their own counts.
Counts continuations(const Counts& longer, Counts own, int words, Word begin) {
  std::vector<Key> keys;
  for (const Count& each : longer) keys.push_back(shortened(words + 1, each.key));
  const Counts before = counted(std::move(keys));
  auto found = before.begin();
  for (Count& each : own) {
    if (each.key >> (kWordBits * (words - 1)) == begin) continue;
    while (found != before.end() && found->key < each.key) ++found;
    each.count = found != before.end() && found->key == each.key ? found->count : 1;
  }
  return own;
}

}  // namespace

Sentences readSentences(std::istream& input, const Vocabulary& vocabulary) {
  Sentences sentences;
  for (std::string line; std::getline(input, line);) {
    std::vector<Word> sentence{vocabulary.begin()};
    std::istringstream words(line);
    for (std::string word; words >> word;) sentence.push_back(vocabulary.find(word));
    sentence.push_back(vocabulary.end());
    sentences.push_back(std::move(sentence));
  }
  return sentences;
}

LanguageModel estimated(const Sentences& sentences, const Vocabulary& vocabulary) {
  const Counts three = counted(sequences(sentences, 3));
  const Counts two = counted(sequences(sentences, 2));
  const Word begin = vocabulary.begin();
  Counts one = counted(sequences(sentences, 1));
  std::erase_if(one, [&](const Count& each) { return each.key == begin; });
  LanguageModel model;
  addEntries(model, 1, continuations(two, one, 1, begin), vocabulary.size());
  addEntries(model, 2, continuations(three, two, 2, begin), vocabulary.size());
  addEntries(model, 3, three, vocabulary.size());
  return model;
}

double perplexity(const LanguageModel& model, const Sentences& sentences) {
  double sum = 0;
  long count = 0;
  for (const auto& sentence : sentences) {
    Key context = sentence.front();
    int words = 1;
    for (auto word = sentence.begin() + 1; word != sentence.end(); ++word) {
      if (*word == kUnknown) {
        words = 0;
        context = 0;
        continue;
      }
      const Key key = extended(context, *word);
      if (words > 0) {
        sum += model.probability(words + 1, key);
        ++count;
      }
      words = std::min(words + 1, 2);
      context = shortened(LanguageModel::kOrder, key);
    }
  }
  return std::exp(-sum / static_cast<double>(count));
}
