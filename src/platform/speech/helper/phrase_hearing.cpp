// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/phrase_hearing.h"

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

constexpr double kSampleRate = 16000;

/// The minimum mean confidence of a phrase. Noises have 0.16 to 0.34, speech has 0.56 to 1.
constexpr double kMinConfidence = 0.45;
/// The same of a phrase of one or two words, and of a sound that is not like speech: a hoarse voice
/// has no pitch.
constexpr double kMinConfidenceOfFew = 0.6;
constexpr std::size_t kFewWords = 2;
/// A phrase that is more than this times quieter or louder than the one before is heard at the
/// wrong level at first.
constexpr float kOtherLevel = 2;
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

bool isOtherLevel(float gain, float other) {
  return gain > kOtherLevel * other || other > kOtherLevel * gain;
}

HeardWords PhraseHearing::finish(const EndedPhrase& phrase) {
  HeardWords words = finalWords(phrase);
  decoder_.end();
  decoder_.releaseMemory();
  if (areWordsInNoise(words, phrase.voicedSeconds)) words.clear();
  return words;
}

HeardWords PhraseHearing::finalWords(const EndedPhrase& phrase) {
  const std::vector<float> audio = amplified(phrase.audio, phrase.gain);
  HeardWords first = firstHearing(phrase, audio);
  // The first hearing of a phrase that was cut went on after its end.
  const double end = static_cast<double>(audio.size()) / kSampleRate;
  std::erase_if(first,
                [end](const RecognizedWord& word) { return word.start + word.end > 2 * end; });
  if (areMeaningless(first)) return {};
  const HeardWords second = heardAgain(audio, first);
  return isSure(second, phrase.isLikelySpeech) ? combinedHearings(first, second) : HeardWords();
}

HeardWords PhraseHearing::firstHearing(const EndedPhrase& phrase, std::span<const float> audio) {
  const std::vector<float> pause = missingPause(phrase.closingPause);
  decoder_.accept(pause);
  HeardWords words = decoder_.endAndKeepVoice();
  if (!isOtherLevel(phrase.gain, phrase.draftGain) || !isUnsure(words)) return words;
  decoder_.end();
  decoder_.accept(audio);
  decoder_.accept(pause);
  return decoder_.endAndKeepVoice();
}

HeardWords PhraseHearing::heardAgain(std::span<const float> audio, const HeardWords& first) {
  const double begin = threadSeconds();
  std::size_t at = 0;
  while (at < audio.size() && threadSeconds() - begin < kMaxSecondHearing) {
    const std::size_t length = std::min(kTimedPiece, audio.size() - at);
    decoder_.accept(audio.subspan(at, length));
    at += length;
  }
  HeardWords second = decoder_.end();
  if (at == audio.size()) return second;
  return completedHearing(std::move(second), first, static_cast<double>(at) / kSampleRate);
}

TranscriptionResult resultOf(HeardWords words, double begin, const QString& language) {
  QStringList texts;
  for (RecognizedWord& word : words) {
    word.start += begin;
    word.end += begin;
    texts.append(word.text);
  }
  return {lineOf(texts, language), false, std::move(words)};
}

TranscriptionResult finalResultOf(HeardWords words, const EndedPhrase& phrase,
                                  const QString& language) {
  TranscriptionResult result = resultOf(std::move(words), phrase.begin, language);
  result.isFinal = true;
  result.isCut = phrase.mayGoOn;
  result.until = phrase.begin + static_cast<double>(phrase.audio.size()) / kSampleRate;
  return result;
}

}  // namespace velun
