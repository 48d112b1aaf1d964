// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/built_in/sentence_writer.h"

#include "platform/speech/built_in/sentence_case.h"
#include "platform/speech/english/english_text.h"
#include "platform/speech/english/sentence_marks.h"
#include "platform/speech/english/titles.h"
#include "platform/speech/helper/finished_words.h"

#include <algorithm>
#include <QStringList>
#include <utility>

namespace velun {

namespace {

/// The model was trained with up to 56 words and measured with 24 before those to be decided.
constexpr std::size_t kContextWords = 24;
/// Seconds of silence after which the words before do not belong to what is said.
constexpr double kNewTalk = 4;

CaptionWords captionWords(const std::vector<RecognizedWord>& heard, bool isBeforePause) {
  CaptionWords words;
  for (std::size_t i = 0; i < heard.size(); ++i) {
    const bool isLast = i + 1 == heard.size();
    const bool pauses = isLast ? isBeforePause : heard[i + 1].start - heard[i].end >= kLongPause;
    words.push_back({heard[i].text, {}, heard[i].start, heard[i].end, pauses});
  }
  return words;
}

/// The words as one sentence without marks.
CaptionWords withoutMarks(CaptionWords words) {
  QStringList texts;
  for (const CaptionWord& word : words) texts.append(word.text);
  texts = sentenceCase(texts).split(u' ');
  for (std::size_t i = 0; i < words.size(); ++i) words[i].text = texts[static_cast<qsizetype>(i)];
  return words;
}

/// How many words of a phrase that was cut belong to finished sentences.
std::size_t countFinished(const CaptionWords& words) {
  std::vector<PhraseWord> plain;
  for (const CaptionWord& word : words) {
    PhraseWord each;
    each.endsSentence = endsSentence(word);
    each.hasMark = !word.marks.isEmpty();
    plain.push_back(each);
  }
  return countFinishedWords(plain, 0);
}

}  // namespace

SentenceWriter::SentenceWriter(std::unique_ptr<PunctuationRestorer> punctuation,
                               std::shared_ptr<const CaptionStyle> style)
    : punctuation_(std::move(punctuation)), style_(std::move(style)) {}

void SentenceWriter::load() {
  if (punctuation_) punctuation_->load();
}

void SentenceWriter::cancel() {
  if (punctuation_) punctuation_->cancel();
}

std::vector<TranscriptionResult> SentenceWriter::write(const TranscriptionResult& result) {
  if (result.words.empty() && !result.text.isEmpty()) return {result};
  heard_ = unfinished_;
  heard_.insert(heard_.end(), result.words.begin(), result.words.end());
  if (heard_.empty()) return {result};
  if (!result.isFinal || result.words.empty()) return {draft()};
  forgetOldContext(heard_);
  const CaptionWords words = punctuated(captionWords(heard_, !result.isCut), !result.isCut);
  const bool mayGoOn = result.isCut && isPunctuating();
  const std::size_t count = mayGoOn ? countFinished(words) : words.size();
  std::vector<TranscriptionResult> results;
  if (count > 0) {
    results.push_back(final(words, count, result.isCut));
    if (count == heard_.size()) {
      results.back().isCut = result.isCut;
      results.back().until = result.until;
    }
  }
  unfinished_.assign(heard_.begin() + static_cast<std::ptrdiff_t>(count), heard_.end());
  heard_ = unfinished_;
  if (!heard_.empty()) results.push_back(draft());
  return results;
}

std::optional<double> SentenceWriter::unfinishedUntil() const {
  if (unfinished_.empty()) return std::nullopt;
  return unfinished_.back().end;
}

std::optional<TranscriptionResult> SentenceWriter::finish() {
  if (unfinished_.empty()) return std::nullopt;
  heard_ = std::exchange(unfinished_, {});
  return final(punctuated(captionWords(heard_, true), true), heard_.size(), false);
}

TranscriptionResult SentenceWriter::draft() {
  forgetOldContext(heard_);
  return {text(punctuated(captionWords(heard_, false), false), false), false, heard_};
}

/// Writes the first `count` words of `heard_`, which become the context of the next ones.
TranscriptionResult SentenceWriter::final(const CaptionWords& words, std::size_t count,
                                          bool goesOn) {
  const auto end = static_cast<std::ptrdiff_t>(count);
  CaptionWords written(words.begin(), words.begin() + end);
  // After a pause, the comma would be left hanging if nothing more is said, and the model is often
  // wrong about it (docs/recognition.md).
  if (!goesOn && written.back().marks == QLatin1String(",")) written.back().marks.clear();
  context_.insert(context_.end(), written.begin(), written.end());
  const std::size_t surplus = context_.size() - std::min(context_.size(), kContextWords);
  context_.erase(context_.begin(), context_.begin() + static_cast<std::ptrdiff_t>(surplus));
  TranscriptionResult result{text(written, true), true, {heard_.begin(), heard_.begin() + end}};
  const double last = result.words.back().end;
  const bool isLast = count == heard_.size();
  // In the middle of the pause before the next word, if there is one.
  result.until = isLast ? last : (last + heard_[count].start) / 2;
  return result;
}

QString SentenceWriter::text(const CaptionWords& words, bool isFinal) const {
  return joinedText(writeEnglish(writeTitles(words), {style_->numbersAsDigits, !isFinal}));
}

void SentenceWriter::forgetOldContext(const HeardWords& heard) {
  if (!context_.empty() && heard.front().start - context_.back().end > kNewTalk) context_.clear();
}

bool SentenceWriter::isPunctuating() const {
  return punctuation_ && !punctuation_->failure();
}

std::optional<QString> SentenceWriter::failure() const {
  return punctuation_ ? punctuation_->failure() : std::nullopt;
}

CaptionWords SentenceWriter::punctuated(const CaptionWords& words, bool isFinal) {
  if (!isPunctuating()) return withoutMarks(words);
  CaptionWords all = context_;
  all.insert(all.end(), words.begin(), words.end());
  const QString text = textForPunctuation(all);
  const bool isTaken = takePunctuation(all, punctuation_->restored(text));
  if (!isTaken || !isPunctuating()) return withoutMarks(words);
  // What was shown as final stays as it is.
  std::copy(context_.begin(), context_.end(), all.begin());
  if (!isFinal) removeUndecidedMarks(all, context_.size());
  agreeOnCapitals(all, context_.size(), true);
  return {all.begin() + static_cast<std::ptrdiff_t>(context_.size()), all.end()};
}

}  // namespace velun
