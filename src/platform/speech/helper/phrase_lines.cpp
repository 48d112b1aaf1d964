// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/phrase_lines.h"

#include "platform/speech/helper/finished_words.h"

#include <algorithm>
#include <utility>

namespace velun {

namespace {

/// The end of a sentence is certain when so many words follow it (docs/recognition.md).
constexpr std::size_t kWordsAfterEnd = 2;
/// A recognizer that changes its mind rarely changes the number of words by more.
constexpr qsizetype kMaxShift = 2;

QString lettersOf(QStringView text) {
  QString letters;
  for (const QChar each : text) {
    if (each.isLetterOrNumber() || each.isSurrogate() || each.isMark()) letters += each.toLower();
  }
  return letters;
}

/// How many of `words`, from the first, are the `before` words, which may have changed since.
qsizetype countSame(const QStringList& words, const QStringList& before) {
  const qsizetype expected = before.size();
  if (expected == 0) return 0;
  for (qsizetype shift = 0; shift <= kMaxShift; ++shift) {
    for (const qsizetype count : {expected + shift, expected - shift}) {
      if (count > 0 && count <= words.size() && words[count - 1] == before.last()) return count;
    }
  }
  return std::min(expected, words.size());
}

}  // namespace

/// The part of a text that is not final.
struct PhraseLines::Rest {
  QString text;
  QStringList letters;  ///< of its words
};

PhraseLines::PhraseLines(QString language) : language_(std::move(language)) {}

PhraseLines::Rest PhraseLines::restOf(const QString& text) const {
  const std::vector<PhraseWord> words = phraseWords(text, language_);
  QStringList letters;
  for (const PhraseWord& word : words) {
    letters.append(lettersOf(QStringView(text).sliced(word.begin, word.end - word.begin)));
  }
  const qsizetype count = countSame(letters, finalWords_);
  if (count == letters.size()) return {};
  QString rest = text.mid(words[static_cast<std::size_t>(count)].begin);
  if (count > 0 && hasEndedSentence_) rest[0] = rest[0].toUpper();
  return {rest, letters.mid(count)};
}

PhraseLines::Results PhraseLines::update(const QString& text) {
  Results results;
  Rest rest = restOf(text);
  const std::vector<PhraseWord> words = phraseWords(rest.text, language_);
  const std::size_t count = countFinishedWords(words, kWordsAfterEnd);
  std::size_t done = 0;
  for (std::size_t i = 0; i < count; ++i) {
    if (!words[i].endsSentence && i + 1 < count) continue;
    const qsizetype begin = words[done].begin;
    results.push_back({rest.text.mid(begin, words[i].end - begin), true});
    done = i + 1;
  }
  if (count > 0) {
    hasEndedSentence_ = words[count - 1].endsSentence;
    finalWords_ += rest.letters.first(static_cast<qsizetype>(count));
    rest.text = rest.text.mid(words[count].begin);
    draft_.clear();
  }
  if (rest.text != draft_) {
    draft_ = rest.text;
    results.push_back({draft_, false});
  }
  return results;
}

PhraseLines::Results PhraseLines::finish(const QString& text) {
  Results results;
  const QString rest = restOf(text).text;
  if (!rest.isEmpty() || !draft_.isEmpty()) results.push_back({rest, true});
  finalWords_.clear();
  hasEndedSentence_ = false;
  draft_.clear();
  return results;
}

}  // namespace velun
