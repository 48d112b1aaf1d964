// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/phrase_recognizer.h"

#include "platform/speech/helper/words_in_noise.h"

#include <utility>

namespace velun {

PhraseRecognizer::PhraseRecognizer(const vosk::Library& library, const RecognizerSettings& settings)
    : hearing_(VoskDecoder(library, settings)), language_(settings.language) {}

void PhraseRecognizer::accept(std::span<const float> samples) {
  for (const PhraseFinder::Step& step : phrases_.accept(samples)) hear(step);
}

void PhraseRecognizer::finalize() {
  if (const auto step = phrases_.end()) hear(*step);
}

void PhraseRecognizer::hear(const PhraseFinder::Step& step) {
  if (step.isAgain) hearing_.restart();
  hearing_.accept(step.audio);
  if (step.ended) {
    endPhrase(*step.ended);
  } else {
    updateDraft(step);
  }
}

void PhraseRecognizer::updateDraft(const PhraseFinder::Step& step) {
  HeardWords words = stable_.update(hearing_.words());
  if (!step.isLikelySpeech || areMeaningless(words)) return;
  TranscriptionResult draft = resultOf(std::move(words), step.phraseBegin, language_);
  if (draft.text == draft_) return;
  draft_ = draft.text;
  results_.push_back(std::move(draft));
}

void PhraseRecognizer::endPhrase(const EndedPhrase& phrase) {
  HeardWords words = hearing_.finish(phrase);
  stable_.reset();
  const bool wasShown = !std::exchange(draft_, {}).isEmpty();
  if (wasShown || !words.empty()) {
    results_.push_back(finalResultOf(std::move(words), phrase, language_));
  }
}

std::vector<TranscriptionResult> PhraseRecognizer::takeResults() {
  return std::exchange(results_, {});
}

}  // namespace velun
