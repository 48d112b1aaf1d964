// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/built_in/built_in_backend.h"

#include "platform/speech/built_in/sentence_case.h"
#include "platform/speech/helper/caption_text.h"

#include <algorithm>
#include <cmath>
#include <malloc.h>
#include <utility>

namespace velun {

namespace {

constexpr std::size_t kFrame = VoiceActivity::kFrameLength;

/// Takes 0.08 of real time with word errors of 18 to 25 %; the final pass has fewer.
const SphinxDecoder::Options kDraftOptions = {
    {"-maxhmmpf", "3000"}, {"-maxwpf", "10"}, {"-fwdflat", "no"}, {"-bestpath", "no"}};

/// One guess per 100 ms.
constexpr int kFramesPerGuess = 10;

/// Quiet speech is raised to this level; louder speech stays as it is.
constexpr float kTargetLevel = 0.08F;
constexpr float kMaxGain = 30.0F;

/// Speech has at least one word in two seconds. A longer sound with fewer words is noise or music.
constexpr double kLongSound = 3.0;
constexpr double kMinWordsPerSecond = 0.6;

/// The root mean square of the louder half of the 10 ms frames.
float speechLevel(std::span<const float> samples) {
  std::vector<float> powers;
  for (std::size_t i = 0; i + kFrame <= samples.size(); i += kFrame) {
    float power = 0;
    for (const float sample : samples.subspan(i, kFrame)) power += sample * sample;
    powers.push_back(power / kFrame);
  }
  if (powers.empty()) return 0;
  const auto middle = powers.begin() + static_cast<std::ptrdiff_t>(powers.size() / 2);
  std::nth_element(powers.begin(), middle, powers.end());
  float sum = 0;
  for (auto each = middle; each != powers.end(); ++each) sum += *each;
  return std::sqrt(sum / static_cast<float>(powers.end() - middle));
}

float gainFor(std::span<const float> phrase) {
  const float level = speechLevel(phrase);
  return level > 0 ? std::clamp(kTargetLevel / level, 1.0F, kMaxGain) : 1.0F;
}

std::vector<std::int16_t> amplified(std::span<const float> samples, float gain) {
  std::vector<std::int16_t> integers(samples.size());
  std::transform(samples.begin(), samples.end(), integers.begin(), [gain](float sample) {
    return static_cast<std::int16_t>(std::lround(std::clamp(sample * gain, -1.0F, 1.0F) * 32767));
  });
  return integers;
}

/// The phrase in the format of the final pass.
std::vector<std::int16_t> prepared(std::span<const float> phrase) {
  return amplified(phrase, gainFor(phrase));
}

bool isNoise(const QStringList& words, double voicedSeconds) {
  return voicedSeconds > kLongSound &&
         static_cast<double>(words.size()) < kMinWordsPerSecond * voicedSeconds;
}

}  // namespace

BuiltInBackend::BuiltInBackend(std::unique_ptr<PunctuationRestorer> punctuation)
    : punctuation_(std::move(punctuation)), drafts_(kDraftOptions) {}

BuiltInBackend::~BuiltInBackend() = default;

BuiltInBackend::HeapTrimmer::~HeapTrimmer() {
  malloc_trim(0);
}

void BuiltInBackend::load() {
  if (punctuation_) punctuation_->load();
}

void BuiltInBackend::acceptAudio(std::span<const float> samples) {
  partialFrame_.insert(partialFrame_.end(), samples.begin(), samples.end());
  const std::span<const float> all(partialFrame_);
  std::size_t used = 0;
  for (; used + kFrame <= all.size(); used += kFrame) acceptFrame(all.subspan(used, kFrame));
  partialFrame_.erase(partialFrame_.begin(),
                      partialFrame_.begin() + static_cast<std::ptrdiff_t>(used));
}

void BuiltInBackend::acceptFrame(std::span<const float> frame) {
  const PhraseDetector::Event event = phrases_.accept(frame);
  if (event == PhraseDetector::Event::began) {
    beginDraft();
  } else if (isDrafting_) {
    feedDraft(frame);
  }
  if (event == PhraseDetector::Event::pausing && !awaitsFinal_) {
    finals_.start(prepared(phrases_.samples()));
    isSettling_ = true;
  } else if (event == PhraseDetector::Event::resumed && isSettling_) {
    finals_.abandon();
    isSettling_ = false;
  } else if (event == PhraseDetector::Event::ended) {
    endPhrase();
  }
}

void BuiltInBackend::beginDraft() {
  drafts_.begin();
  isDrafting_ = true;
  stable_.reset();
  draftWords_.clear();
  framesSinceGuess_ = 0;
  feedDraft(phrases_.samples());
}

void BuiltInBackend::feedDraft(std::span<const float> samples) {
  drafts_.process(amplified(samples, draftGain_));
  framesSinceGuess_ += static_cast<int>(samples.size() / kFrame);
  if (framesSinceGuess_ < kFramesPerGuess) return;
  framesSinceGuess_ = 0;
  const QStringList words = stable_.update(drafts_.words());
  if (!phrases_.isLikelySpeech() || words == draftWords_) return;
  draftWords_ = words;
  // Written like the final result, so that little changes when the draft is replaced, but without
  // the punctuation at the end, because the phrase may continue.
  draft_ = withoutEnd(written(words));
  showDraft();
}

void BuiltInBackend::showDraft() {
  QString all = awaitedDraft_;
  if (!all.isEmpty() && !draft_.isEmpty()) all += u' ';
  all += draft_;
  if (all == shownDraft_) return;
  shownDraft_ = all;
  results_.push_back({all, false});
}

void BuiltInBackend::endPhrase() {
  if (isDrafting_) drafts_.end();
  isDrafting_ = false;
  const double voiced = phrases_.voicedSeconds();
  const bool isLikelySpeech = phrases_.isLikelySpeech();
  const std::vector<float> phrase = phrases_.takePhrase();
  draftGain_ = gainFor(phrase);
  // Two phrases can end close to each other; the earlier one is delivered first.
  if (awaitsFinal_) {
    if (const auto words = finals_.wait()) deliver(*words);
  }
  awaitedDraft_ = std::exchange(draft_, {});
  if (isLikelySpeech) {
    if (!isSettling_) finals_.start(prepared(phrase));
    awaitsFinal_ = true;
    awaitedVoice_ = voiced;
  } else {
    finals_.abandon();
    deliver({});
  }
  isSettling_ = false;
  if (phrases_.isInPhrase()) beginDraft();
}

void BuiltInBackend::deliver(const QStringList& words) {
  awaitsFinal_ = false;
  const bool isNothing = words.isEmpty() || isNoise(words, awaitedVoice_);
  const bool wasShown = !std::exchange(awaitedDraft_, {}).isEmpty();
  if (isNothing && !wasShown) return;
  results_.push_back({isNothing ? QString() : written(words), true});
  shownDraft_.clear();
  showDraft();
}

QString BuiltInBackend::written(const QStringList& words) const {
  const QString sentence = sentenceCase(words);
  return punctuation_ ? punctuation_->restored(sentence) : sentence;
}

void BuiltInBackend::takeFinal() {
  if (!awaitsFinal_) return;
  if (const auto words = finals_.take()) deliver(*words);
}

std::vector<TranscriptionResult> BuiltInBackend::poll() {
  takeFinal();
  return std::exchange(results_, {});
}

bool BuiltInBackend::expectsResults() const {
  return phrases_.isInPhrase() || awaitsFinal_;
}

void BuiltInBackend::finalize() {
  if (phrases_.end()) endPhrase();
  if (!awaitsFinal_) return;
  if (const auto words = finals_.wait()) deliver(*words);
}

void BuiltInBackend::cancel() {
  finals_.cancel();
  if (punctuation_) punctuation_->cancel();
}

}  // namespace velun
