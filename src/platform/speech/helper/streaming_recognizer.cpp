// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/streaming_recognizer.h"

#include "platform/speech/helper/caption_text.h"
#include "platform/speech/helper/speech_level.h"
#include "platform/speech/helper/spoken_tokens.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace velun {

namespace {

constexpr int kRate = 16000;

/// Long audio is decoded in pieces of 0.1 s, so that there are drafts in between.
constexpr std::size_t kPiece = kRate / 10;

/// So many seconds after its last line, a phrase is ended by a shorter silence, which must be
/// longer than the overlap so that the last word is not decoded twice. Models that write sentences
/// need more patience.
constexpr double kLongPhrase = 8.0;
constexpr double kLongPhraseWithMarks = 14.0;
constexpr double kLongPhraseSilence = 0.36;

/// Seconds. A phrase may go on for so long, one line after the other. Then, and when there is no
/// new line for `maxPhrase`, it is ended between two words.
constexpr double kMaxSegment = 60;
constexpr double kMinGap = 0.2;

/// A new stream starts with the audio of the old one from this many seconds before its last step.
constexpr double kOverlap = 0.3;

std::size_t samplesOf(double seconds) {
  return static_cast<std::size_t>(std::lround(seconds * kRate));
}

}  // namespace

StreamingRecognizer::StreamingRecognizer(const sherpa::Library& library,
                                         const RecognizerSettings& settings,
                                         const Punctuator* punctuator)
    : settings_(settings),
      punctuator_(punctuator),
      lines_(settings.language),
      stream_(library, settings) {}

void StreamingRecognizer::beginStream() {
  stream_.begin();
  recent_.clear();
  phraseBegin_ = 0;
  lastWord_ = 0;
  lineBegin_ = 0;
  text_.clear();
}

void StreamingRecognizer::accept(std::span<const float> samples) {
  for (std::size_t at = 0; at < samples.size(); at += kPiece) {
    const auto piece = samples.subspan(at, std::min(kPiece, samples.size() - at));
    heard_ += piece.size();
    feed(gain_.amplified(usableSamples(piece)));
    decodeReady();
  }
}

void StreamingRecognizer::feed(std::span<const float> samples) {
  stream_.feed(samples);
  recent_.insert(recent_.end(), samples.begin(), samples.end());
  const ModelSteps& steps = stream_.steps();
  const std::size_t kept = samplesOf(2 * steps.window + steps.step + 1);
  if (recent_.size() > 2 * kept) {
    recent_.erase(recent_.begin(), recent_.end() - static_cast<std::ptrdiff_t>(kept));
  }
}

void StreamingRecognizer::decodeReady() {
  while (stream_.decodeStep()) {
    readResult();
    if (hasEnded() || stream_.isEndpoint()) {
      endPhrase(true);
    } else if (hasPaused()) {
      endPhrase(false);
    }
  }
}

double StreamingRecognizer::segmentSeconds() const {
  return stream_.decodedSeconds() - phraseBegin_;
}

/// Whether a long phrase is in a short silence.
bool StreamingRecognizer::hasPaused() const {
  const double longPhrase = settings_.writesMarks ? kLongPhraseWithMarks : kLongPhrase;
  const double length = segmentSeconds() - lineBegin_;
  const bool isTooLong = length > settings_.maxPhrase || segmentSeconds() > kMaxSegment;
  const double silence = isTooLong ? kMinGap : kLongPhraseSilence;
  return isInPhrase() && (isTooLong || length > longPhrase) &&
         segmentSeconds() - lastWord_ > silence;
}

/// Whether silence follows a sentence that ended with a mark. For sherpa-onnx the silence begins
/// only with the mark, which may come a second after the last word.
bool StreamingRecognizer::hasEnded() const {
  return settings_.writesMarks && endsSentence(text_) &&
         segmentSeconds() - lastWord_ >= settings_.endpointSilence;
}

QString StreamingRecognizer::written(const SherpaStream::Hearing& hearing) const {
  const QString text = settings_.textFromTokens ? textOf(hearing.tokens)
                                                : printable(QString::fromUtf8(hearing.text));
  return cased(withoutLateMarks(text), settings_.language, settings_.foldsLetters);
}

void StreamingRecognizer::readResult() {
  const SherpaStream::Hearing hearing = stream_.hearing();
  lastWord_ = lastWordTime(hearing.tokens).value_or(lastWord_);
  const QString text = written(hearing);
  if (text == text_) return;
  text_ = text;
  // Punctuated like the final result, so that no word changes when the draft is replaced.
  const QString draft = punctuator_ ? withoutEnd(punctuator_->punctuated(text)) : text;
  const std::size_t finalCount = lines_.finalCount();
  PhraseLines::Results results = lines_.update(draft);
  const std::size_t rest = lines_.draftCount();
  std::optional<double> until = beginOfLastWords(hearing.tokens, rest, lines_.finalCount() + rest);
  if (until) *until += phraseBegin_;
  take(std::move(results), until);
  if (lines_.finalCount() != finalCount) lineBegin_ = segmentSeconds();
}

void StreamingRecognizer::take(PhraseLines::Results results, std::optional<double> until) {
  if (until) {
    const double heard = static_cast<double>(heard_) / kRate;
    until = std::clamp(heard - (stream_.fedSeconds() - *until), 0.0, heard);
  }
  for (TranscriptionResult& result : results) {
    if (result.isFinal) result.until = until;
  }
  std::move(results.begin(), results.end(), std::back_inserter(results_));
}

void StreamingRecognizer::deliverFinal(double until, bool isCut) {
  PhraseLines::Results results =
      lines_.finish(punctuator_ ? punctuator_->punctuated(text_) : text_);
  if (!results.empty()) results.back().isCut = isCut;
  take(std::move(results), until);
}

void StreamingRecognizer::endPhrase(bool isPaused) {
  const bool isForced = segmentSeconds() - lastWord_ < kOverlap + 0.05;
  const bool wasEmpty = lines_.isEmpty();
  const double until = stream_.decodedSeconds() - (isForced ? 0 : kOverlap);
  // A transducer that keeps the tokens of the last phrase loses the first word of the next one if
  // it begins with the same token. A new stream does not; feed it the audio that the old one has
  // not decoded, preceded by a little silence. When a phrase is cut in a word there is no such
  // silence.
  if (stream_.steps().remembersTokens && !isForced && !wasEmpty) {
    const double rest = stream_.fedSeconds() - stream_.decodedSeconds() + kOverlap;
    const std::size_t count = std::min(samplesOf(rest), recent_.size());
    const std::vector<float> end(recent_.end() - static_cast<std::ptrdiff_t>(count), recent_.end());
    const double late = stream_.fedSeconds();
    if (isPaused && settings_.writesMarks) takeLateMark();
    // The silence for the mark was fed, but not heard.
    deliverFinal(until + stream_.fedSeconds() - late);
    beginStream();
    feed(end);
  } else {
    deliverFinal(until, isForced);
    stream_.beginSegment();
    phraseBegin_ = stream_.decodedSeconds();
    lastWord_ = 0;
    lineBegin_ = 0;
    text_.clear();
  }
}

/// Some models write the mark at the end of a sentence only after a second of silence. It would be
/// lost with the stream, or begin the next phrase.
void StreamingRecognizer::takeLateMark() {
  if (endsSentence(text_)) return;
  stream_.feedSilence(tailSeconds());
  while (stream_.decodeStep()) {
  }
  const QString text = written(stream_.hearing());
  if (text.startsWith(text_)) text_ += lateMarks(text.mid(text_.size()));
}

double StreamingRecognizer::tailSeconds() const {
  const ModelSteps& steps = stream_.steps();
  return std::max(settings_.tailSilenceMs / 1000.0, steps.window + steps.step);
}

void StreamingRecognizer::finalize() {
  const std::vector<float> silence(samplesOf(tailSeconds()), 0.0F);
  const std::size_t heard = heard_;
  accept(silence);
  heard_ = heard;
  deliverFinal(stream_.fedSeconds());
  beginStream();
}

void StreamingRecognizer::skip() {
  deliverFinal(stream_.fedSeconds());
  beginStream();
}

std::vector<TranscriptionResult> StreamingRecognizer::takeResults() {
  return std::exchange(results_, {});
}

}  // namespace velun
