// SPDX-License-Identifier: GPL-3.0-or-later
#include "mixture.h"

#include <algorithm>
#include <cmath>

namespace {

/// The entries of `words` words whose removal loses at least `least`, or that others need.
std::vector<Entry> kept(const LanguageModel& model, int words, const std::vector<double>& losses,
                        double least) {
  std::vector<Key> needed;
  if (words < LanguageModel::kOrder) {
    for (const Entry& each : model.entries(words + 1)) {
      if (needed.empty() || needed.back() != contextOf(each.key)) {
        needed.push_back(contextOf(each.key));
      }
    }
  }
  std::vector<Entry> entries;
  for (std::size_t i = 0; i < losses.size(); ++i) {
    const Entry& each = model.entries(words)[i];
    if (losses[i] >= least || std::binary_search(needed.begin(), needed.end(), each.key)) {
      entries.push_back(each);
    }
  }
  return entries;
}

/// By how much the entropy of the model grows without each entry of `words` words.
std::vector<double> losses(const LanguageModel& model, int words, const Vocabulary& vocabulary) {
  const auto& all = model.entries(words);
  std::vector<double> result(all.size());
  for (auto first = all.begin(); first != all.end();) {
    const Key context = contextOf(first->key);
    double longer = 0, shorter = 0;
    auto last = first;
    for (; last != all.end() && contextOf(last->key) == context; ++last) {
      longer += std::exp(last->probability);
      shorter += std::exp(model.probability(words - 1, shortened(words, last->key)));
    }
    const double restLonger = std::max(1 - longer, 1e-6);
    const double restShorter = std::max(1 - shorter, 1e-6);
    // A sentence begins as often as one ends.
    double ofContext = 0;
    for (int i = 1; i < words; ++i) {
      const Key part = context >> (kWordBits * (words - 1 - i));
      ofContext += part == vocabulary.begin() ? model.entries(1)[vocabulary.end()].probability
                                              : model.probability(i, part);
    }
    const double before = std::log(restLonger / restShorter);
    for (; first != last; ++first) {
      const double own = std::exp(first->probability);
      const double back = model.probability(words - 1, shortened(words, first->key));
      const double after = std::log((restLonger + own) / (restShorter + std::exp(back)));
      result[static_cast<std::size_t>(first - all.begin())] =
          -std::exp(ofContext) *
          (own * (after + back - first->probability) + restLonger * (after - before));
    }
  }
  return result;
}

}  // namespace

LanguageModel mixed(const std::vector<const LanguageModel*>& models,
                    const std::vector<double>& weights) {
  LanguageModel sum;
  for (int words = 1; words <= LanguageModel::kOrder; ++words) {
    std::vector<Key> keys;
    for (const LanguageModel* model : models) {
      for (const Entry& each : model->entries(words)) keys.push_back(each.key);
    }
    std::sort(keys.begin(), keys.end());
    keys.erase(std::unique(keys.begin(), keys.end()), keys.end());
    for (const Key key : keys) {
      double probability = 0;
      for (std::size_t i = 0; i < models.size(); ++i) {
        probability += weights[i] * std::exp(models[i]->probability(words, key));
      }
      sum.entries(words).push_back({key, static_cast<float>(std::log(probability)), 0});
    }
  }
  sum.normalise();
  return sum;
}

LanguageModel pruned(const LanguageModel& model, std::size_t limit, const Vocabulary& vocabulary) {
  LanguageModel best;
  const std::vector<double> three = losses(model, 3, vocabulary);
  double low = -30, high = -5;  // logarithms of the least loss
  for (int step = 0; step < 8; ++step) {
    const double least = std::exp((low + high) / 2);
    LanguageModel smaller;
    smaller.entries(1) = model.entries(1);
    smaller.entries(2) = model.entries(2);
    smaller.entries(3) = kept(model, 3, three, least);
    smaller.normalise();
    smaller.entries(2) = kept(smaller, 2, losses(smaller, 2, vocabulary), least);
    smaller.normalise();
    const bool fits = smaller.entries(2).size() + smaller.entries(3).size() <= limit;
    (fits ? high : low) = (low + high) / 2;
    if (fits) best = std::move(smaller);
  }
  return best;
}
