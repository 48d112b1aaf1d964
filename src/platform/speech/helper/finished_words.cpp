// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/finished_words.h"

#include "platform/foundation/sentences.h"

#include <utility>

namespace velun {

namespace {

/// A sentence of more words is cut: 30 words in 12 seconds have waited long.
constexpr std::size_t kMaxUnfinished = 30;
/// A character in writing without blanks counts half.
constexpr std::size_t kHalvesOfWord = 2;

std::size_t halves(const PhraseWord& word) {
  return word.isLetter ? 1 : kHalvesOfWord;
}

bool isWithoutBlanks(char32_t character) {
  switch (QChar::script(character)) {
    case QChar::Script_Han:
    case QChar::Script_Hiragana:
    case QChar::Script_Katakana:
    case QChar::Script_Thai:
    case QChar::Script_Lao:
    case QChar::Script_Khmer:
    case QChar::Script_Myanmar:
      return QChar::isLetterOrNumber(character);
    default:
      return false;
  }
}

bool isMark(char32_t character) {
  return QChar::isPunct(character) && !QChar::isLetterOrNumber(character);
}

bool opensSomething(char32_t character) {
  const QChar::Category category = QChar::category(character);
  return category == QChar::Punctuation_Open || category == QChar::Punctuation_InitialQuote ||
         character == U'¿' || character == U'¡';
}

/// Finds the words of a text, without their sentence ends.
class Splitter {
 public:
  void take(char32_t character) {
    const qsizetype begin = at_;
    at_ += QChar::requiresSurrogates(character) ? 2 : 1;
    const bool isLetter = QChar::isLetterOrNumber(character);
    if (QChar::isSpace(character)) {
      close();
      return;
    }
    const bool isAlone = isWithoutBlanks(character);
    const bool isNew = !isOpen_ || (hasLetter_ && (isAlone || opensSomething(character)));
    if (isNew) {
      close();
      words_.push_back({begin, at_});
      isOpen_ = true;
    }
    PhraseWord& word = words_.back();
    word.end = at_;
    word.hasMark = isMark(character);
    word.isLetter = word.isLetter || isAlone;
    hasLetter_ = hasLetter_ || isLetter;
  }

  std::vector<PhraseWord> finish() {
    close();
    return std::move(words_);
  }

 private:
  /// Marks without letters belong to the word before.
  void close() {
    if (isOpen_ && !hasLetter_ && words_.size() > 1) {
      const PhraseWord marks = words_.back();
      words_.pop_back();
      words_.back().end = marks.end;
      words_.back().hasMark = marks.hasMark;
    }
    isOpen_ = false;
    hasLetter_ = false;
  }

  std::vector<PhraseWord> words_;
  qsizetype at_ = 0;
  bool isOpen_ = false;
  bool hasLetter_ = false;  ///< the last word has one
};

}  // namespace

std::size_t countFinishedWords(std::span<const PhraseWord> words, std::size_t undecided) {
  std::size_t after = 0;
  std::size_t marked = 0;
  std::size_t unmarked = 0;
  for (std::size_t count = words.size(); count > 0; --count) {
    const PhraseWord& last = words[count - 1];
    if (after >= undecided * kHalvesOfWord) {
      if (last.endsSentence) return count;
      if (marked == 0 && last.hasMark) marked = count;
      if (unmarked == 0) unmarked = count;
    }
    after += halves(last);
  }
  if (after <= kMaxUnfinished * kHalvesOfWord) return 0;
  return marked > 0 ? marked : unmarked;
}

std::vector<PhraseWord> phraseWords(const QString& text, const QString& language) {
  Splitter splitter;
  for (const char32_t character : text.toUcs4()) splitter.take(character);
  std::vector<PhraseWord> words = splitter.finish();
  qsizetype end = 0;
  std::size_t next = 0;
  for (const QString& sentence : sentences(text, language)) {
    end += sentence.size();
    while (next < words.size() && words[next].end <= end) ++next;
    if (next > 0) words[next - 1].endsSentence = end < text.size() && words[next - 1].hasMark;
  }
  return words;
}

}  // namespace velun
