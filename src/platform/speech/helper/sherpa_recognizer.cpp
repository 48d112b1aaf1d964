// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/sherpa_recognizer.h"

#include "platform/speech/helper/caption_text.h"
#include "platform/speech/helper/speech_level.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace velun {

namespace {

constexpr int kRate = 16000;

/// Long audio is decoded in pieces of 0.1 s, so that there are drafts in between.
constexpr std::size_t kPiece = kRate / 10;

}  // namespace

SherpaRecognizer::SherpaRecognizer(const sherpa::Library& library,
                                   const RecognizerSettings& settings, const Punctuator* punctuator)
    : settings_(settings),
      punctuator_(punctuator),
      lines_(settings.language),
      stream_(library, settings) {}

void SherpaRecognizer::accept(std::span<const float> samples) {
  for (std::size_t at = 0; at < samples.size(); at += kPiece) {
    const auto piece = samples.subspan(at, std::min(kPiece, samples.size() - at));
    heard_ += piece.size();
    const std::vector<float> usable = usableSamples(piece);
    silence_.add(usable);
    acceptPiece(usable);
  }
}

void SherpaRecognizer::acceptSilence(double seconds) {
  const std::size_t heard = heard_;
  accept(std::vector<float>(static_cast<std::size_t>(std::lround(seconds * kRate)), 0.0F));
  heard_ = heard;
}

void SherpaRecognizer::updatePhrase(const QString& text, SpokenTokens tokens, double tokensBegin) {
  // Punctuated like the final result, so that no word changes when the draft is replaced.
  PhraseLines::Results results =
      lines_.update(punctuator_ ? withoutEnd(punctuator_->punctuated(text)) : text);
  const std::size_t rest = lines_.draftCount();
  std::optional<double> until = beginOfLastWords(tokens, rest, lines_.finalCount() + rest);
  if (until) *until += tokensBegin;
  take(std::move(results), until);
}

void SherpaRecognizer::finishPhrase(const QString& text, double until, bool isCut) {
  PhraseLines::Results results = lines_.finish(punctuator_ ? punctuator_->punctuated(text) : text);
  if (!results.empty()) results.back().isCut = isCut;
  take(std::move(results), until);
}

/// The final results cover the audio up to `until`, in seconds of the stream.
void SherpaRecognizer::take(PhraseLines::Results results, std::optional<double> until) {
  if (until) {
    const double heard = static_cast<double>(heard_) / kRate;
    until = std::clamp(heard - (stream_.fedSeconds() - *until), 0.0, heard);
  }
  for (TranscriptionResult& result : results) {
    if (result.isFinal) result.until = until;
  }
  std::move(results.begin(), results.end(), std::back_inserter(results_));
}

double SherpaRecognizer::tailSeconds() const {
  const ModelSteps& steps = stream_.steps();
  return std::max(settings_.tailSilenceMs / 1000.0, steps.window + steps.step);
}

std::vector<TranscriptionResult> SherpaRecognizer::takeResults() {
  return std::exchange(results_, {});
}

}  // namespace velun
