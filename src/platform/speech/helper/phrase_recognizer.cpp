// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/phrase_recognizer.h"

#include "platform/speech/helper/caption_text.h"
#include "platform/speech/helper/combined_hearings.h"
#include "platform/speech/helper/speech_level.h"
#include "platform/speech/helper/words_in_noise.h"

#include <algorithm>
#include <ctime>
#include <QStringList>
#include <utility>

namespace velun {

namespace {

constexpr std::size_t kFrame = VoiceActivity::kFrameLength;
constexpr double kSampleRate = 16000;

/// One guess per 0.1 s.
constexpr std::size_t kSamplesPerGuess = 1600;

/// The minimum mean confidence of a phrase. Noises have 0.16 to 0.34, speech has 0.56 to 1.
constexpr double kMinConfidence = 0.45;
/// The same of a phrase of one or two words, and of a sound that is not like speech: a hoarse voice
/// has no pitch.
constexpr double kMinConfidenceOfFew = 0.6;
constexpr std::size_t kFewWords = 2;
/// A phrase that is more than this times quieter or louder than the one before is heard at the
/// wrong level at first.
constexpr float kOtherLevel = 2;
/// Seconds of voice after which the level of a phrase is known.
constexpr double kVoiceForLevel = 1;

/// Seconds. libvosk keeps the last part of what it was given until more comes, so a word there
/// would be heard at the beginning of the second hearing. After such a pause nothing is added: the
/// second hearing differs more from the first one then, which makes both together better.
constexpr double kMinPause = 0.5;

/// Seconds of processor time for the second hearing, so that the final words of long phrases, and
/// of music, do not come late: on an idle machine speech takes a tenth of its duration.
constexpr double kMaxSecondHearing = 2.0;
/// The second hearing checks its time after so many samples, 0.4 s.
constexpr std::size_t kTimedPiece = 6400;

double threadSeconds() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

/// Silence that makes the pause at the end of a phrase long enough.
std::vector<float> missingPause(double closingPause) {
  const double missing = std::max(0.0, kMinPause - closingPause);
  return std::vector<float>(static_cast<std::size_t>(missing * kSampleRate), 0.0F);
}

bool isOtherLevel(float gain, float other) {
  return gain > kOtherLevel * other || other > kOtherLevel * gain;
}

bool isUnsure(const HeardWords& words) {
  const bool isFew = words.size() <= kFewWords;
  return meanConfidence(words) < (isFew ? kMinConfidenceOfFew : kMinConfidence);
}

/// Whether the second hearing of a phrase is sure enough to be shown.
bool isSure(const HeardWords& second, bool isLikelySpeech) {
  if (isUnsure(second)) return false;
  return isLikelySpeech || (second.size() > 1 && meanConfidence(second) >= kMinConfidenceOfFew);
}

/// The words as a line. Without a language they stay as they are, for a program that writes them.
QString lineOf(const QStringList& words, const QString& language) {
  const bool hasNoBlanks = language == "ja" || language == "zh";
  const QString line = words.join(hasNoBlanks ? QString() : QStringLiteral(" "));
  return language.isEmpty() ? line : cased(line, language, false);
}

}  // namespace

PhraseRecognizer::PhraseRecognizer(const vosk::Library& library, const RecognizerSettings& settings)
    : decoder_(library, settings), language_(settings.language) {}

void PhraseRecognizer::accept(std::span<const float> samples) {
  const std::vector<float> usable = usableSamples(samples);
  partialFrame_.insert(partialFrame_.end(), usable.begin(), usable.end());
  const std::span<const float> all(partialFrame_);
  std::size_t used = 0;
  for (; used + kFrame <= all.size(); used += kFrame) acceptFrame(all.subspan(used, kFrame));
  partialFrame_.erase(partialFrame_.begin(),
                      partialFrame_.begin() + static_cast<std::ptrdiff_t>(used));
}

void PhraseRecognizer::acceptFrame(std::span<const float> frame) {
  heard_ += frame.size();
  const PhraseDetector::Event event = phrases_.accept(frame);
  if (event == PhraseDetector::Event::began) {
    beginPhrase();
  } else if (phrases_.isInPhrase() || event == PhraseDetector::Event::ended) {
    waiting_.insert(waiting_.end(), frame.begin(), frame.end());
  }
  if (event == PhraseDetector::Event::ended) {
    endPhrase();
  } else if (waiting_.size() >= kSamplesPerGuess) {
    checkLevel();
    decodeWaiting();
    updateDraft();
  }
}

void PhraseRecognizer::beginPhrase() {
  waiting_ = phrases_.samples();
  phraseBegin_ = heard_ - waiting_.size();
  stable_.reset();
  isLevelChecked_ = false;
}

void PhraseRecognizer::checkLevel() {
  if (isLevelChecked_ || phrases_.voicedSeconds() < kVoiceForLevel) return;
  isLevelChecked_ = true;
  const float gain = gainFor(phrases_.samples());
  if (!isOtherLevel(gain, draftGain_)) return;
  draftGain_ = gain;
  decoder_.end();
  waiting_ = phrases_.samples();
}

void PhraseRecognizer::decodeWaiting() {
  decoder_.accept(amplified(waiting_, draftGain_));
  waiting_.clear();
}

void PhraseRecognizer::updateDraft() {
  const HeardWords words = stable_.update(decoder_.words());
  if (!phrases_.isLikelySpeech() || areMeaningless(words)) return;
  TranscriptionResult draft = written(words, false);
  if (draft.text == draft_) return;
  draft_ = draft.text;
  results_.push_back(std::move(draft));
}

void PhraseRecognizer::endPhrase() {
  decodeWaiting();
  const double voiced = phrases_.voicedSeconds();
  const bool isLikelySpeech = phrases_.isLikelySpeech();
  const std::vector<float> phrase = phrases_.takePhrase();
  HeardWords words = finalWords(phrase, isLikelySpeech);
  decoder_.end();
  if (areWordsInNoise(words, voiced)) words.clear();
  const bool wasShown = !std::exchange(draft_, {}).isEmpty();
  if (wasShown || !words.empty()) {
    results_.push_back(written(std::move(words), true));
    results_.back().isCut = phrases_.mayGoOn();
    results_.back().until = static_cast<double>(phraseBegin_ + phrase.size()) / kSampleRate;
  }
  decoder_.releaseMemory();
  if (phrases_.isInPhrase()) beginPhrase();  // the rest of a phrase that was cut
}

HeardWords PhraseRecognizer::finalWords(std::span<const float> phrase, bool isLikelySpeech) {
  const float gain = gainFor(phrase);
  const std::vector<float> audio = amplified(phrase, gain);
  HeardWords first = firstHearing(audio, gain);
  // The first hearing of a phrase that was cut went on after its end.
  const double end = static_cast<double>(phrase.size()) / kSampleRate;
  std::erase_if(first,
                [end](const RecognizedWord& word) { return word.start + word.end > 2 * end; });
  if (areMeaningless(first)) return {};
  const HeardWords second = heardAgain(audio, first);
  return isSure(second, isLikelySpeech) ? combinedHearings(first, second) : HeardWords();
}

HeardWords PhraseRecognizer::firstHearing(std::span<const float> phrase, float gain) {
  const std::vector<float> pause = missingPause(phrases_.closingPause());
  decoder_.accept(pause);
  HeardWords words = decoder_.endAndKeepVoice();
  const bool wasOtherLevel = isOtherLevel(gain, std::exchange(draftGain_, gain));
  if (!wasOtherLevel || !isUnsure(words)) return words;
  decoder_.end();
  decoder_.accept(phrase);
  decoder_.accept(pause);
  return decoder_.endAndKeepVoice();
}

HeardWords PhraseRecognizer::heardAgain(std::span<const float> phrase, const HeardWords& first) {
  const double begin = threadSeconds();
  std::size_t at = 0;
  while (at < phrase.size() && threadSeconds() - begin < kMaxSecondHearing) {
    const std::size_t length = std::min(kTimedPiece, phrase.size() - at);
    decoder_.accept(phrase.subspan(at, length));
    at += length;
  }
  HeardWords second = decoder_.end();
  if (at == phrase.size()) return second;
  return completedHearing(std::move(second), first, static_cast<double>(at) / kSampleRate);
}

TranscriptionResult PhraseRecognizer::written(HeardWords words, bool isFinal) const {
  const double begin = static_cast<double>(phraseBegin_) / kSampleRate;
  QStringList texts;
  for (RecognizedWord& word : words) {
    word.start += begin;
    word.end += begin;
    texts.append(word.text);
  }
  return {lineOf(texts, language_), isFinal, std::move(words)};
}

void PhraseRecognizer::finalize() {
  if (phrases_.end()) endPhrase();
}

std::vector<TranscriptionResult> PhraseRecognizer::takeResults() {
  return std::exchange(results_, {});
}

}  // namespace velun
