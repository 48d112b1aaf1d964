// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/sentence_recognizer.h"

#include "platform/speech/helper/caption_text.h"

#include <algorithm>

namespace velun {

namespace {

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
    : SherpaRecognizer(library, settings, punctuator) {}

void SentenceRecognizer::acceptPiece(std::span<const float> piece) {
  stream().feed(amplified(piece));
  decodeReady();
}

void SentenceRecognizer::decodeReady() {
  while (stream().decodeStep()) {
    tokens_ = stream().hearing().tokens;
    updateLines();
  }
  const double pause =
      tokens_.size() > kManyTokens ? settings().endpointSilence : settings().idleSilence;
  if (!tokens_.empty() && phrase().empty() && hasDecodedSpeech() && silentSeconds() >= pause &&
      isSilent(pause)) {
    restart();
  }
}

/// Whether nothing was recognized in the last `seconds` of the decoded audio.
bool SentenceRecognizer::isSilent(double seconds) const {
  const std::optional<double> last = lastWordTime(tokens_);
  return !last || stream().decodedSeconds() - *last >= seconds;
}

SpokenTokens SentenceRecognizer::phrase() const {
  return SpokenTokens(tokens_).subspan(std::min(phraseBegin_, tokens_.size()));
}

QString SentenceRecognizer::phraseText() const {
  const QString text = withoutLateMarks(textOf(phrase()));
  return cased(text, settings().language, settings().foldsLetters);
}

void SentenceRecognizer::updateLines() {
  if (phrase().empty()) return;
  const double pause =
      phrase().size() > kLongPhraseTokens ? kLongPhraseSilence : settings().endpointSilence;
  if (isSilent(pause)) {
    // In the silence, after the last word.
    endPhrase(stream().decodedSeconds() - pause / 2);
    return;
  }
  updatePhrase(phraseText(), phrase(), 0);
}

/// Makes what is left of the phrase a line. The model goes on.
void SentenceRecognizer::endPhrase(double until) {
  finishPhrase(phraseText(), until);
  phraseBegin_ = tokens_.size();
}

void SentenceRecognizer::finalize() {
  stream().feedSilence(tailSeconds());
  decodeReady();
  skip();
}

void SentenceRecognizer::skip() {
  endPhrase(stream().fedSeconds());
  restart();
}

void SentenceRecognizer::restart() {
  stream().begin();
  tokens_.clear();
  phraseBegin_ = 0;
}

}  // namespace velun
