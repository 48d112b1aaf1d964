// SPDX-License-Identifier: GPL-3.0-or-later
#include "fst_text.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <sstream>
#include <stdexcept>

namespace {

constexpr std::size_t kNone = static_cast<std::size_t>(-1);

/// Weights are multiples of this: the file compresses to half, and the perplexity stays.
constexpr float kWeightStep = 1.0F / 16;

float weight(float probability) {
  return std::round(-probability / kWeightStep) * kWeightStep;
}

struct Arc {
  std::size_t from, to;
  Word word;
  float probability;
};

struct Fst {
  std::vector<Arc> arcs;
  std::vector<std::size_t> backOff;       // by state
  std::vector<float> backOffWeight, end;  // by state; `end` is 1 where no sentence ends
  std::size_t first = 0;

  void grow(std::size_t state) {
    if (state < backOff.size()) return;
    backOff.resize(state + 1, kNone);
    backOffWeight.resize(state + 1, 0);
    end.resize(state + 1, 1);
  }
};

Fst readArcs(std::istream& input, const Vocabulary& vocabulary) {
  Fst fst;
  bool isFirst = true;
  for (std::string line; std::getline(input, line); isFirst = false) {
    const bool isEnd = std::count(line.begin(), line.end(), '\t') < 2;
    std::istringstream fields(line);
    std::size_t from = 0, to = 0;
    std::string in, out;
    float cost = 0;
    fields >> from;
    if (isFirst) fst.first = from;
    fst.grow(from);
    if (isEnd) {  // "state weight", or "state" for the weight 0
      if (!(fields >> cost)) cost = 0;
      fst.end[from] = -cost;
      continue;
    }
    fields >> to >> in >> out;
    if (!(fields >> cost)) cost = 0;
    fst.grow(to);
    if (in == "<eps>") {
      fst.backOff[from] = to;
      fst.backOffWeight[from] = -cost;
    } else {
      fst.arcs.push_back({from, to, vocabulary.find(in), -cost});
    }
  }
  return fst;
}

/// The words of each state's context, for all states that are reached from the start of shorter
/// ones.
std::vector<std::pair<int, Key>> contexts(const Fst& fst, const Vocabulary& vocabulary) {
  std::vector<std::pair<int, Key>> found(fst.backOff.size(), {-1, 0});
  const std::size_t unigrams = fst.backOff[fst.first];
  found[unigrams] = {0, 0};
  found[fst.first] = {1, vocabulary.begin()};
  const auto depth = [&](std::size_t state) {
    int steps = 0;
    for (; state != unigrams; state = fst.backOff[state]) ++steps;
    return steps;
  };
  for (int words = 0; words < 2; ++words) {
    for (const Arc& arc : fst.arcs) {
      if (found[arc.from].first == words && found[arc.to].first < 0 && depth(arc.to) == words + 1) {
        found[arc.to] = {words + 1, extended(found[arc.from].second, arc.word)};
      }
    }
  }
  return found;
}

}  // namespace

LanguageModel readFst(std::istream& input, const Vocabulary& vocabulary) {
  const Fst fst = readArcs(input, vocabulary);
  const auto context = contexts(fst, vocabulary);
  LanguageModel model;
  model.entries(1).resize(vocabulary.size());
  for (Word word = 0; word < vocabulary.size(); ++word) model.entries(1)[word] = {word, -30, 0};
  const auto add = [&](std::size_t from, Word word, float probability) {
    const auto& [words, key] = context[from];
    if (words < 0) throw std::runtime_error("a state has no context");
    const Entry entry{extended(key, word), probability, 0};
    if (words == 0)
      model.entries(1)[word] = entry;
    else
      model.entries(words + 1).push_back(entry);
  };
  for (const Arc& arc : fst.arcs) add(arc.from, arc.word, arc.probability);
  for (std::size_t state = 0; state < fst.end.size(); ++state) {
    if (fst.end[state] <= 0) add(state, vocabulary.end(), fst.end[state]);
  }
  model.sort();
  for (std::size_t state = 0; state < context.size(); ++state) {
    const auto& [words, key] = context[state];
    if (words < 1) continue;
    const Entry* found = model.find(words, key);
    if (!found) continue;
    auto& entries = model.entries(words);
    entries[static_cast<std::size_t>(found - entries.data())].backOff = fst.backOffWeight[state];
  }
  return model;
}

void writeFst(std::ostream& output, const LanguageModel& model, const Vocabulary& vocabulary) {
  // State 0 has no context, state 1 the beginning of a sentence. The other states are the contexts
  // of entries; every context without its first word is one too.
  std::map<Key, std::size_t> states[LanguageModel::kOrder];
  states[1][vocabulary.begin()] = 1;
  std::size_t next = 2;
  for (int words = 2; words >= 1; --words) {
    for (const Entry& each : model.entries(words + 1)) {
      const Key key = contextOf(each.key);
      if (states[words].try_emplace(key, next).second) ++next;
      if (words == 2 && states[1].try_emplace(shortened(2, key), next).second) ++next;
    }
  }
  const auto state = [&](int words, Key key) {
    for (; words > 0; key = shortened(words, key), --words) {
      if (words < LanguageModel::kOrder) {
        if (const auto found = states[words].find(key); found != states[words].end()) {
          return found->second;
        }
      }
    }
    return std::size_t(0);
  };
  // The first line's state becomes the start.
  for (const auto& [key, from] : states[1]) {
    if (from != 1) continue;
    output << "1\t0\t<eps>\t<eps>\t" << weight(model.entries(1)[key].backOff) << '\n';
  }
  for (int words = 1; words < LanguageModel::kOrder; ++words) {
    for (const auto& [key, from] : states[words]) {
      if (from == 1) continue;
      const Entry* entry = model.find(words, key);
      output << from << '\t' << state(words - 1, shortened(words, key)) << "\t<eps>\t<eps>\t"
             << (entry ? weight(entry->backOff) : 0.0F) << '\n';
    }
  }
  for (int words = 1; words <= LanguageModel::kOrder; ++words) {
    for (const Entry& each : model.entries(words)) {
      const std::size_t from = state(words - 1, contextOf(each.key));
      const Word word = lastWord(each.key);
      if (word == kUnknown || word == vocabulary.begin()) continue;
      if (word == vocabulary.end()) {
        output << from << '\t' << weight(each.probability) << '\n';
      } else if (!vocabulary.text(word).empty()) {
        output << from << '\t' << state(words, each.key) << '\t' << vocabulary.text(word) << '\t'
               << vocabulary.text(word) << '\t' << weight(each.probability) << '\n';
      }
    }
  }
}

LanguageModel readArpa(std::istream& input, const Vocabulary& vocabulary) {
  const double natural = std::log(10.0);
  LanguageModel model;
  model.entries(1).resize(vocabulary.size());
  for (Word word = 0; word < vocabulary.size(); ++word) model.entries(1)[word] = {word, -30, 0};
  int words = 0;
  for (std::string line; std::getline(input, line);) {
    if (line.starts_with('\\')) {
      words = std::isdigit(line[1]) && line.ends_with("-grams:") ? line[1] - '0' : 0;
      continue;
    }
    std::istringstream fields(line);
    double probability = 0, backOff = 0;
    if (words < 1 || words > LanguageModel::kOrder || !(fields >> probability)) continue;
    Key key = 0;
    bool isKnown = true;
    for (int i = 0; i < words; ++i) {
      std::string text;
      fields >> text;
      const Word word = text == "<s>"    ? vocabulary.begin()
                        : text == "</s>" ? vocabulary.end()
                                         : vocabulary.find(text);
      isKnown &= word != kUnknown;
      key = extended(key, word);
    }
    if (!isKnown) continue;
    fields >> backOff;
    const Entry entry{key, static_cast<float>(probability * natural),
                      static_cast<float>(backOff * natural)};
    if (words == 1)
      model.entries(1)[key] = entry;
    else
      model.entries(words).push_back(entry);
  }
  model.sort();
  return model;
}
