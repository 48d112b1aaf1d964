// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/english/caption_word.h"
#include "platform/speech/english/number_words.h"

#include <initializer_list>
#include <vector>

namespace velun {

/// The words between two marks or pauses, by their position, as the number rules read them. Nothing
/// is joined beyond it.
class Phrase {
 public:
  /// The words [`begin`, `end`) of `words`. `isDraft`: more words may follow `words`.
  Phrase(const CaptionWords& words, qsizetype begin, qsizetype end, bool isDraft);

  qsizetype begin() const { return begin_; }
  qsizetype end() const { return end_; }

  /// The lower-case word at a position. Before the phrase these are words of the same sentence,
  /// which only tell what the phrase means; empty beyond them.
  const QString& word(qsizetype at) const;
  /// The word at a position as it came.
  const QString& original(qsizetype at) const;
  NumberWord number(qsizetype at) const;
  NumberWordKind kind(qsizetype at) const { return number(at).kind; }
  bool is(qsizetype at, std::initializer_list<const char*> words) const;
  /// The word after the phrase as it came, unless the speaker pauses before it; empty for none.
  QString following() const;

  /// Whether a word was looked at that is not known yet, because the phrase may continue.
  bool hasReachedEnd() const { return hasReachedEnd_; }

 private:
  struct Token {
    QString word;
    NumberWord number;
  };
  const Token& token(qsizetype at) const;
  /// Whether the last word may be followed by more words of the phrase.
  bool isOpen() const;

  const CaptionWords& words_;
  qsizetype begin_;
  qsizetype end_;
  qsizetype contextBegin_;
  bool isDraft_;
  std::vector<Token> tokens_;
  mutable bool hasReachedEnd_ = false;
};

/// Whether a phrase ends after the word: a mark or a pause follows it.
bool endsPhrase(const CaptionWord& word);

/// Some words of a phrase and how they are written.
struct Piece {
  qsizetype begin = 0;
  qsizetype end = 0;
  QString text;
};

/// How the words up to a position are written. Words before `end` without a piece stay as they are.
struct Rewriting {
  qsizetype end = 0;
  std::vector<Piece> pieces;
};

}  // namespace velun
