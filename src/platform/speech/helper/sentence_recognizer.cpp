// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/sentence_recognizer.h"

#include "platform/speech/helper/caption_text.h"
#include "platform/speech/helper/speech_level.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace velun {

namespace {

constexpr double kRate = 16000;

/// Long audio is decoded in pieces of 0.1 s, so that there are drafts in between.
constexpr std::size_t kPiece = 1600;

/// Tokens after which the model is restarted in the next pause: half an hour of speech.
constexpr std::size_t kManyTokens = 8000;

/// A phrase of so many tokens, minutes of speech without a pause, is ended by a silence of so many
/// seconds.
constexpr std::size_t kLongPhraseTokens = 1000;
constexpr double kLongPhraseSilence = 0.3;

}  // namespace

SentenceRecognizer::SentenceRecognizer(const sherpa::Library& library,
                                       const RecognizerSettings& settings,
                                       const Punctuator* punctuator)
    : settings_(settings),
      punctuator_(punctuator),
      lines_(settings.language),
      stream_(library, settings) {}

void SentenceRecognizer::accept(std::span<const float> samples) {
  for (std::size_t at = 0; at < samples.size(); at += kPiece) {
    const auto piece = usableSamples(samples.subspan(at, std::min(kPiece, samples.size() - at)));
    heard_ += piece.size();
    measureSilence(piece);
    stream_.feed(gain_.amplified(piece));
    decodeReady();
  }
}

void SentenceRecognizer::measureSilence(std::span<const float> samples) {
  constexpr std::size_t kFrame = VoiceActivity::kFrameLength;
  partialFrame_.insert(partialFrame_.end(), samples.begin(), samples.end());
  const std::span<const float> all(partialFrame_);
  std::size_t used = 0;
  for (; used + kFrame <= all.size(); used += kFrame) {
    const bool isVoice = activity_.isVoice(all.subspan(used, kFrame));
    quiet_ = isVoice ? 0 : quiet_ + kFrame / kRate;
  }
  partialFrame_.erase(partialFrame_.begin(),
                      partialFrame_.begin() + static_cast<std::ptrdiff_t>(used));
}

void SentenceRecognizer::decodeReady() {
  while (stream_.decodeStep()) {
    tokens_ = stream_.hearing().tokens;
    updateLines();
  }
  const double pause =
      tokens_.size() > kManyTokens ? settings_.endpointSilence : settings_.idleSilence;
  const bool hasDecodedSpeech = stream_.fedSeconds() - stream_.decodedSeconds() < quiet_;
  if (!tokens_.empty() && phrase().empty() && quiet_ >= pause && hasDecodedSpeech &&
      isSilent(pause)) {
    restart();
  }
}

/// Whether nothing was recognized in the last `seconds` of the decoded audio.
bool SentenceRecognizer::isSilent(double seconds) const {
  const std::optional<double> last = lastWordTime(tokens_);
  return !last || stream_.decodedSeconds() - *last >= seconds;
}

SpokenTokens SentenceRecognizer::phrase() const {
  return SpokenTokens(tokens_).subspan(std::min(phraseBegin_, tokens_.size()));
}

QString SentenceRecognizer::phraseText() const {
  const QString text = withoutLateMarks(textOf(phrase()));
  return cased(text, settings_.language, settings_.foldsLetters);
}

void SentenceRecognizer::updateLines() {
  if (phrase().empty()) return;
  const double pause =
      phrase().size() > kLongPhraseTokens ? kLongPhraseSilence : settings_.endpointSilence;
  if (isSilent(pause)) {
    // In the silence, after the last word.
    endPhrase(stream_.decodedSeconds() - pause / 2);
    return;
  }
  const QString text = phraseText();
  PhraseLines::Results results =
      lines_.update(punctuator_ ? withoutEnd(punctuator_->punctuated(text)) : text);
  const std::size_t rest = lines_.draftCount();
  take(std::move(results), beginOfLastWords(phrase(), rest, lines_.finalCount() + rest));
}

/// Makes what is left of the phrase a line. The model goes on.
void SentenceRecognizer::endPhrase(double until) {
  const QString text = phraseText();
  take(lines_.finish(punctuator_ ? punctuator_->punctuated(text) : text), until);
  phraseBegin_ = tokens_.size();
}

void SentenceRecognizer::take(PhraseLines::Results results, std::optional<double> until) {
  if (until) {
    const double heard = static_cast<double>(heard_) / kRate;
    until = std::clamp(heard - (stream_.fedSeconds() - *until), 0.0, heard);
  }
  for (TranscriptionResult& result : results) {
    if (result.isFinal) result.until = until;
  }
  std::move(results.begin(), results.end(), std::back_inserter(results_));
}

void SentenceRecognizer::finalize() {
  stream_.feedSilence(
      std::max(settings_.tailSilenceMs / 1000.0, stream_.steps().window + stream_.steps().step));
  decodeReady();
  skip();
}

void SentenceRecognizer::skip() {
  endPhrase(stream_.fedSeconds());
  restart();
}

void SentenceRecognizer::restart() {
  stream_.begin();
  tokens_.clear();
  phraseBegin_ = 0;
  quiet_ = 0;
}

std::vector<TranscriptionResult> SentenceRecognizer::takeResults() {
  return std::exchange(results_, {});
}

}  // namespace velun
