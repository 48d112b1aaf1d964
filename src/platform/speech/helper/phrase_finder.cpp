// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/phrase_finder.h"

#include "platform/speech/helper/speech_level.h"

#include <utility>

namespace velun {

namespace {

constexpr std::size_t kFrame = VoiceActivity::kFrameLength;
constexpr double kSampleRate = 16000;

/// One guess per 0.1 s.
constexpr std::size_t kSamplesPerGuess = 1600;
/// Seconds of voice after which the level of a phrase is known.
constexpr double kVoiceForLevel = 1;

}  // namespace

std::vector<PhraseFinder::Step> PhraseFinder::accept(std::span<const float> samples) {
  const std::vector<float> usable = usableSamples(samples);
  partialFrame_.insert(partialFrame_.end(), usable.begin(), usable.end());
  const std::span<const float> all(partialFrame_);
  std::vector<Step> steps;
  std::size_t used = 0;
  for (; used + kFrame <= all.size(); used += kFrame) {
    if (auto step = acceptFrame(all.subspan(used, kFrame))) steps.push_back(*std::move(step));
  }
  partialFrame_.erase(partialFrame_.begin(),
                      partialFrame_.begin() + static_cast<std::ptrdiff_t>(used));
  return steps;
}

std::optional<PhraseFinder::Step> PhraseFinder::acceptFrame(std::span<const float> frame) {
  taken_ += frame.size();
  const PhraseDetector::Event event = phrases_.accept(frame);
  if (event == PhraseDetector::Event::began) {
    begin();
  } else if (phrases_.isInPhrase() || event == PhraseDetector::Event::ended) {
    waiting_.insert(waiting_.end(), frame.begin(), frame.end());
  }
  if (event == PhraseDetector::Event::ended) return endPhrase();
  if (waiting_.size() < kSamplesPerGuess) return std::nullopt;
  const bool isAgain = checkLevel();
  Step step = nextPiece();
  step.isAgain = isAgain;
  return step;
}

void PhraseFinder::begin() {
  waiting_ = phrases_.samples();
  phraseBegin_ = taken_ - waiting_.size();
  isLevelChecked_ = false;
}

bool PhraseFinder::checkLevel() {
  if (isLevelChecked_ || phrases_.voicedSeconds() < kVoiceForLevel) return false;
  isLevelChecked_ = true;
  const float gain = gainFor(phrases_.samples());
  if (!isOtherLevel(gain, draftGain_)) return false;
  draftGain_ = gain;
  waiting_ = phrases_.samples();
  return true;
}

PhraseFinder::Step PhraseFinder::nextPiece() {
  Step step;
  step.audio = amplified(std::exchange(waiting_, {}), draftGain_);
  step.phraseBegin = static_cast<double>(phraseBegin_) / kSampleRate;
  step.isLikelySpeech = phrases_.isLikelySpeech();
  return step;
}

PhraseFinder::Step PhraseFinder::endPhrase() {
  Step step = nextPiece();
  EndedPhrase phrase;
  phrase.begin = step.phraseBegin;
  phrase.voicedSeconds = phrases_.voicedSeconds();
  phrase.closingPause = phrases_.closingPause();
  phrase.isLikelySpeech = step.isLikelySpeech;
  phrase.audio = phrases_.takePhrase();
  phrase.mayGoOn = phrases_.mayGoOn();
  phrase.gain = gainFor(phrase.audio);
  phrase.draftGain = std::exchange(draftGain_, phrase.gain);
  step.ended = std::move(phrase);
  if (phrases_.isInPhrase()) begin();  // the rest of a phrase that was cut
  return step;
}

std::optional<PhraseFinder::Step> PhraseFinder::end() {
  if (!phrases_.end()) return std::nullopt;
  return endPhrase();
}

}  // namespace velun
