// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/streaming_recognizer.h"

#include "platform/speech/helper/caption_text.h"
#include "platform/speech/helper/spoken_tokens.h"

#include <algorithm>
#include <cmath>

namespace velun {

namespace {

constexpr int kRate = 16000;

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
    : SherpaRecognizer(library, settings, punctuator) {}

void StreamingRecognizer::beginStream() {
  stream().begin();
  recent_.clear();
  phraseBegin_ = 0;
  lastWord_ = 0;
  lineBegin_ = 0;
  text_.clear();
}

void StreamingRecognizer::acceptPiece(std::span<const float> piece) {
  feed(amplified(piece));
  decodeReady();
}

void StreamingRecognizer::feed(std::span<const float> samples) {
  stream().feed(samples);
  recent_.insert(recent_.end(), samples.begin(), samples.end());
  const ModelSteps& steps = stream().steps();
  const std::size_t kept = samplesOf(2 * steps.window + steps.step + 1);
  if (recent_.size() > 2 * kept) {
    recent_.erase(recent_.begin(), recent_.end() - static_cast<std::ptrdiff_t>(kept));
  }
}

void StreamingRecognizer::decodeReady() {
  while (stream().decodeStep()) {
    readResult();
    if (hasEnded() || (stream().isEndpoint() && canRestart())) {
      endPhrase(true);
    } else if (hasPaused()) {
      endPhrase(false);
    }
  }
}

/// After a long silence, a model is restarted although it has heard no word. It would lose what it
/// knows of a word that begins now.
bool StreamingRecognizer::canRestart() const {
  return isInPhrase() || hasDecodedSpeech();
}

double StreamingRecognizer::segmentSeconds() const {
  return stream().decodedSeconds() - phraseBegin_;
}

/// Whether a long phrase is in a short silence.
bool StreamingRecognizer::hasPaused() const {
  const double longPhrase = settings().writesMarks ? kLongPhraseWithMarks : kLongPhrase;
  const double length = segmentSeconds() - lineBegin_;
  const bool isTooLong = length > settings().maxPhrase || segmentSeconds() > kMaxSegment;
  const double silence = isTooLong ? kMinGap : kLongPhraseSilence;
  return isInPhrase() && (isTooLong || length > longPhrase) &&
         segmentSeconds() - lastWord_ > silence;
}

/// Whether silence follows a sentence that ended with a mark. For sherpa-onnx the silence begins
/// only with the mark, which may come a second after the last word.
bool StreamingRecognizer::hasEnded() const {
  return settings().writesMarks && endsSentence(text_) &&
         segmentSeconds() - lastWord_ >= settings().endpointSilence;
}

QString StreamingRecognizer::written(const SherpaStream::Hearing& hearing) const {
  const QString text = settings().textFromTokens ? textOf(hearing.tokens)
                                                 : printable(QString::fromUtf8(hearing.text));
  return cased(withoutLateMarks(text), settings().language, settings().foldsLetters);
}

void StreamingRecognizer::readResult() {
  const SherpaStream::Hearing hearing = stream().hearing();
  lastWord_ = lastWordTime(hearing.tokens).value_or(lastWord_);
  const QString text = written(hearing);
  if (text == text_) return;
  text_ = text;
  const std::size_t before = finalCount();
  updatePhrase(text, hearing.tokens, phraseBegin_);
  if (finalCount() != before) lineBegin_ = segmentSeconds();
}

void StreamingRecognizer::endPhrase(bool isPaused) {
  const bool isForced = segmentSeconds() - lastWord_ < kOverlap + 0.05;
  const bool wasEmpty = !isInPhrase();
  const double until = stream().decodedSeconds() - (isForced ? 0 : kOverlap);
  // A transducer that keeps the tokens of the last phrase loses the first word of the next one if
  // it begins with the same token. A new stream does not; feed it the audio that the old one has
  // not decoded, preceded by a little silence. When a phrase is cut in a word there is no such
  // silence.
  if (stream().steps().remembersTokens && !isForced && !wasEmpty) {
    const double rest = stream().fedSeconds() - stream().decodedSeconds() + kOverlap;
    const std::size_t count = std::min(samplesOf(rest), recent_.size());
    const std::vector<float> end(recent_.end() - static_cast<std::ptrdiff_t>(count), recent_.end());
    const double late = stream().fedSeconds();
    if (isPaused && settings().writesMarks) takeLateMark();
    // The silence for the mark was fed, but not heard.
    finishPhrase(text_, until + stream().fedSeconds() - late);
    beginStream();
    feed(end);
  } else {
    finishPhrase(text_, until, isForced);
    stream().beginSegment();
    phraseBegin_ = stream().decodedSeconds();
    lastWord_ = 0;
    lineBegin_ = 0;
    text_.clear();
  }
}

/// Some models write the mark at the end of a sentence only after a second of silence. It would be
/// lost with the stream, or begin the next phrase.
void StreamingRecognizer::takeLateMark() {
  if (endsSentence(text_)) return;
  stream().feedSilence(tailSeconds());
  while (stream().decodeStep()) {
  }
  const QString text = written(stream().hearing());
  if (text.startsWith(text_)) text_ += lateMarks(text.mid(text_.size()));
}

void StreamingRecognizer::finalize() {
  acceptSilence(tailSeconds());
  finishPhrase(text_, stream().fedSeconds());
  beginStream();
}

void StreamingRecognizer::skip() {
  finishPhrase(text_, stream().fedSeconds());
  beginStream();
}

}  // namespace velun
