// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

/// A word's number in the recognizer's vocabulary.
using Word = std::uint32_t;
constexpr int kWordBits = 17;
constexpr Word kUnknown = 0;

/// Up to three words, the last in the lowest bits.
using Key = std::uint64_t;
constexpr Key extended(Key context, Word word) {
  return context << kWordBits | word;
}
constexpr Word lastWord(Key key) {
  return static_cast<Word>(key & ((1U << kWordBits) - 1));
}
constexpr Key contextOf(Key key) {
  return key >> kWordBits;
}

/// The words of the recognizer, with two more for the beginning and the end of a sentence.
class Vocabulary {
 public:
  /// Reads lines "word number". Throws std::runtime_error.
  explicit Vocabulary(const std::string& path);

  /// kUnknown for other words.
  Word find(const std::string& word) const;
  const std::string& text(Word word) const { return texts_[word]; }
  Word begin() const { return begin_; }
  Word end() const { return begin_ + 1; }
  /// One above the highest number.
  Word size() const { return begin_ + 2; }

 private:
  std::unordered_map<std::string, Word> numbers_;
  std::vector<std::string> texts_;
  Word begin_ = 0;
};

/// Logarithms to the base e.
struct Entry {
  Key key = 0;
  float probability = 0;
  /// The weight of the probabilities of shorter contexts after these words.
  float backOff = 0;
};

/// A back-off model of up to three words.
class LanguageModel {
 public:
  static constexpr int kOrder = 3;

  /// The entries of `words` words, sorted by key; those of one word have its number as the index.
  std::vector<Entry>& entries(int words) { return entries_[words - 1]; }
  const std::vector<Entry>& entries(int words) const { return entries_[words - 1]; }
  void sort();

  /// Null when these words have no entry.
  const Entry* find(int words, Key key) const;
  /// The logarithm of the probability of the last of `words` words after the others.
  double probability(int words, Key key) const;
  /// Sets the back-off weights so that all probabilities after the same words add up to 1. Every
  /// context of an entry must be an entry.
  void normalise();

 private:
  std::vector<Entry> entries_[kOrder];
};

/// The words without the first of `words` words.
constexpr Key shortened(int words, Key key) {
  return key & ((Key(1) << (kWordBits * (words - 1))) - 1);
}
