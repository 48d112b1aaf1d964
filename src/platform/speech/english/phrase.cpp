// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/english/phrase.h"

#include "platform/speech/english/sentence_marks.h"

#include <algorithm>

namespace velun {

namespace {

/// The number of words that tell what follows them: "March twenty fifth,".
constexpr qsizetype kContext = 3;

}  // namespace

bool endsPhrase(const CaptionWord& word) {
  return !word.marks.isEmpty() || word.isBeforePause;
}

Phrase::Phrase(const CaptionWords& words, qsizetype begin, qsizetype end, bool isDraft)
    : words_(words), begin_(begin), end_(end), contextBegin_(begin), isDraft_(isDraft) {
  while (contextBegin_ > 0 && begin - contextBegin_ < kContext &&
         !endsSentence(words[static_cast<std::size_t>(contextBegin_ - 1)])) {
    --contextBegin_;
  }
  tokens_.reserve(static_cast<std::size_t>(end - contextBegin_));
  for (qsizetype at = contextBegin_; at < end; ++at) {
    QString lower = original(at).toLower();
    const NumberWord number = numberWord(lower);
    tokens_.push_back({std::move(lower), number});
  }
}

const Phrase::Token& Phrase::token(qsizetype at) const {
  static const Token nothing;
  if (at >= end_ && isDraft_ && isOpen()) hasReachedEnd_ = true;
  if (at < contextBegin_ || at >= end_) return nothing;
  return tokens_[static_cast<std::size_t>(at - contextBegin_)];
}

bool Phrase::isOpen() const {
  const bool isLast = end_ == static_cast<qsizetype>(words_.size());
  return isLast && (end_ == 0 || !endsPhrase(words_.back()));
}

QString Phrase::following() const {
  if (end_ > begin_ && words_[static_cast<std::size_t>(end_ - 1)].isBeforePause) return {};
  if (end_ < static_cast<qsizetype>(words_.size())) return original(end_);
  if (isDraft_) hasReachedEnd_ = true;
  return {};
}

const QString& Phrase::word(qsizetype at) const {
  return token(at).word;
}

const QString& Phrase::original(qsizetype at) const {
  return words_[static_cast<std::size_t>(at)].text;
}

NumberWord Phrase::number(qsizetype at) const {
  return token(at).number;
}

bool Phrase::is(qsizetype at, std::initializer_list<const char*> words) const {
  const QString& text = word(at);
  return std::any_of(words.begin(), words.end(),
                     [&text](const char* each) { return text == QLatin1String(each); });
}

}  // namespace velun
