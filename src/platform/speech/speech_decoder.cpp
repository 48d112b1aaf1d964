// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/speech_decoder.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <iterator>
#include <numeric>
#include <utility>

namespace velun {

namespace {

using namespace std::chrono_literals;

/// How often a recognizer that expects results is polled while no audio arrives.
constexpr auto kPollInterval = 20ms;
/// Seconds. A source with nothing to play may deliver no buffers at all. A gap longer than this,
/// which even a busy machine does not need between two buffers, is decoded as silence, so that a
/// phrase ends where it ended and is not joined to what follows.
constexpr double kMaxBufferInterval = 0.25;
/// Seconds. A process that was suspended for an hour has not recorded an hour of silence.
constexpr double kMaxSilence = 1;
/// Seconds of unfinished audio that are kept for the next recognizer. Phrases are shorter.
constexpr double kMaxPhrase = 40;
/// The same between phrases: the words of a phrase that has begun are shown before this.
constexpr double kMaxOnset = 5;
/// The same of a recording, of which several phrases are decoded at once.
constexpr double kMaxRecorded = 240;
/// Seconds of speech from which a voice is described. Shorter speech says too little about it, and
/// longer speech costs time without saying more.
constexpr double kMinVoice = 1.5;
constexpr double kMaxVoice = 10;
/// Seconds between two words in which the speaker may have changed.
constexpr double kMinTurnPause = 0.4;
/// Samples that are decoded again at a time.
constexpr std::size_t kPiece = kSpeechSampleRate / 2;

void moveTimes(TranscriptionResult& result, double by) {
  for (RecognizedWord& word : result.words) {
    word.start += by;
    word.end += by;
  }
  if (result.until) *result.until += by;
}

}  // namespace

SpeechDecoder::SpeechDecoder(std::shared_ptr<SpeechInput> input, const Clock& clock,
                             const std::atomic<bool>& isCancelled, const RunSignals& runSignals,
                             VoicePrinter* voices)
    : input_(std::move(input)),
      clock_(clock),
      isCancelled_(isCancelled),
      signals_(runSignals),
      voices_(voices),
      backlog_(*input_, clock) {}

void SpeechDecoder::begin(RecognizerBackend& backend) {
  begin_ = audio_.begin();
  isDraftOutdated_ = !draft_.text.isEmpty();
  hasNewFinal_ = false;
  decodeAgain(backend);
  backlog_.recognizerLoaded();
  lastAudio_ = clock_.monotonicSeconds();
  decodedUntil_ = lastAudio_;
}

void SpeechDecoder::decodeAgain(RecognizerBackend& backend) {
  // A copy, because final results shorten it.
  const std::vector<float> again(audio_.samples().begin(), audio_.samples().end());
  for (std::size_t at = 0; at < again.size() && !isCancelled_; at += kPiece) {
    backend.acceptAudio(std::span(again).subspan(at, std::min(kPiece, again.size() - at)));
    // Earlier drafts would be shorter than the one that is shown.
    const bool isLast = at + kPiece >= again.size();
    while (backend.undecodedSeconds() > AudioBacklog::kMaxUndecodedSeconds && !isCancelled_) {
      backend.awaitDecoding(kPollInterval);
      deliverResults(backend, isLast);
    }
    deliverResults(backend, isLast);
  }
}

bool SpeechDecoder::decodeNext(RecognizerBackend& backend) {
  const bool isBusy = backend.undecodedSeconds() > AudioBacklog::kMaxUndecodedSeconds;
  const bool isPolling = backend.expectsResults() || isDraftOutdated_;
  std::optional<SpeechSamples> input;
  if (isBusy) {
    backend.awaitDecoding(kPollInterval);
  } else {
    input = isPolling ? input_->next(kPollInterval) : input_->next();
  }
  if (isCancelled_) return true;
  const double now = clock_.monotonicSeconds();
  if (input) {
    lastAudio_ = now;
    accept(backend, *input);
  } else if (input_->isDrained()) {
    finalize(backend);
    return false;
  } else if (isPolling && !isBusy && now - lastAudio_ > kMaxBufferInterval) {
    acceptSilence(backend, now);
  }
  deliverResults(backend);
  dropOutdatedDraft(backend);
  limitBacklog(backend);
  return true;
}

void SpeechDecoder::accept(RecognizerBackend& backend, const SpeechSamples& input) {
  if (input.followsGap) backend.skip();
  // Kept first, in case the recognizer fails.
  const double begin = audio_.end();
  audio_.add(input.samples);
  times_.add(begin, audio_.end(), input.heardUntil);
  audio_.keepLast(input_->isRecorded()    ? kMaxRecorded
                  : draft_.text.isEmpty() ? kMaxOnset
                                          : kMaxPhrase);
  backend.acceptAudio(input.samples);
}

void SpeechDecoder::limitBacklog(const RecognizerBackend& backend) {
  const AudioBacklog::Update update = backlog_.update(backend.undecodedSeconds());
  if (update.isBehind) signals_.post(&SpeechRun::lagChanged, *update.isBehind);
  if (update.skippedSeconds > 0) signals_.post(&SpeechRun::skipped, update.skippedSeconds);
  if (update.isTooSlow) signals_.post(&SpeechRun::tooSlow, backend.adviceIfTooSlow());
}

void SpeechDecoder::acceptSilence(RecognizerBackend& backend, double now) {
  decodedUntil_ = std::max(decodedUntil_, lastAudio_);
  const double seconds = std::min(now - decodedUntil_, kMaxSilence);
  const std::vector<float> silence(static_cast<std::size_t>(seconds * kSpeechSampleRate), 0.0F);
  decodedUntil_ = now;
  audio_.add(silence);
  backend.acceptAudio(silence);
}

void SpeechDecoder::deliverResults(RecognizerBackend& backend, bool withDrafts) {
  hasNewFinal_ = false;
  for (TranscriptionResult& result : backend.poll()) {
    if (!result.isFinal && !withDrafts) continue;
    moveTimes(result, begin_);
    isDraftOutdated_ = false;
    if (result.isFinal) {
      result.spoken = spoken(result);
      result.voice = voice(result);
      spokenFrom_ = result.until.value_or(audio_.end());
      audio_.removeBefore(result.until.value_or(audio_.end() - backend.undecodedSeconds()));
      hasNewFinal_ = result.until.has_value();
      wasCut_ = result.isCut;
      failuresInPhrase_ = 0;
      draft_ = {};
    } else {
      draft_ = result;
    }
    signals_.post(&SpeechRun::resultReady, std::move(result));
  }
}

/// Where the words are in the run's audio: by the words if the recognizer tells them, otherwise by
/// the end of the phrase before.
std::optional<SpokenSpan> SpeechDecoder::audioSpan(const TranscriptionResult& result) const {
  if (!result.words.empty()) {
    return SpokenSpan{result.words.front().start, result.words.back().end};
  }
  if (!result.until || *result.until <= spokenFrom_) return std::nullopt;
  // At an ordinary speed; what is before is a pause.
  constexpr double kSecondsPerCharacter = 0.1;
  const double length = kSecondsPerCharacter * static_cast<double>(result.text.size());
  return SpokenSpan{std::max(spokenFrom_, *result.until - length), *result.until};
}

std::optional<SpokenSpan> SpeechDecoder::spoken(const TranscriptionResult& result) const {
  const std::optional<SpokenSpan> span = audioSpan(result);
  if (!span) return std::nullopt;
  return SpokenSpan{times_.at(span->start), times_.at(span->end)};
}

/// Whether the voices before and after the first pause differ. Such a result has no voice of its
/// own, and would be given to the wrong speaker.
bool SpeechDecoder::hasTwoVoices(const TranscriptionResult& result) {
  const auto pause = std::ranges::adjacent_find(
      result.words, [](const RecognizedWord& word, const RecognizedWord& next) {
        return next.start - word.end >= kMinTurnPause;
      });
  if (pause == result.words.end()) return false;
  const RecognizedWord& next = *std::next(pause);
  const auto before = audio_.between(result.words.front().start, pause->end);
  const auto after = audio_.between(next.start, result.words.back().end);
  const auto isLong = [](std::span<const float> part) {
    return static_cast<double>(part.size()) >= kMinVoice * kSpeechSampleRate;
  };
  if (!isLong(before) || !isLong(after)) return false;
  const std::optional<VoicePrint> first = voices_->print(before);
  const std::optional<VoicePrint> second = voices_->print(after);
  if (!first || !second) return false;
  const double cosine =
      std::inner_product(first->values.begin(), first->values.end(), second->values.begin(), 0.0);
  return cosine < first->limits.different;
}

std::optional<VoicePrint> SpeechDecoder::voice(const TranscriptionResult& result) {
  if (!voices_ || result.text.isEmpty()) return std::nullopt;
  const std::optional<SpokenSpan> span = audioSpan(result);
  if (!span || span->end - span->start < kMinVoice) return std::nullopt;
  const double end = std::min(span->end, span->start + kMaxVoice);
  const std::span<const float> samples = audio_.between(span->start, end);
  if (static_cast<double>(samples.size()) < kMinVoice * kSpeechSampleRate) return std::nullopt;
  std::optional<VoicePrint> print = voices_->print(samples);
  if (print && hasTwoVoices(result)) print.reset();
  if (const std::optional<QString> failure = voices_->failure()) {
    voices_ = nullptr;
    signals_.post(&SpeechRun::noticedBriefly, *failure);
  }
  return print;
}

void SpeechDecoder::finalize(RecognizerBackend& backend) {
  backend.finalize();
  deliverResults(backend);
  dropOutdatedDraft(backend);
  audio_.clear();
}

/// The new recognizer has decoded the phrase again and heard no words.
void SpeechDecoder::dropOutdatedDraft(const RecognizerBackend& backend) {
  if (!isDraftOutdated_ || backend.expectsResults()) return;
  isDraftOutdated_ = false;
  draft_ = {};
  signals_.post(&SpeechRun::resultReady, TranscriptionResult());
}

void SpeechDecoder::finalizePending(RecognizerBackend& backend) {
  // Only the audio that is pending now: on a slow machine with continuous audio, the stream might
  // never become empty.
  for (double waiting = input_->pendingSeconds(); waiting > 0 && !isCancelled_;) {
    const std::optional<SpeechSamples> input = input_->tryNext();
    if (!input) break;
    waiting -= input->seconds();
    accept(backend, *input);
    deliverResults(backend);
  }
  if (!isCancelled_) finalize(backend);
}

void SpeechDecoder::endFailed(RecognizerBackend& backend) {
  ++failuresInPhrase_;
  try {
    deliverResults(backend);
  } catch (const std::exception&) {
    // It has no more results.
  }
}

void SpeechDecoder::finalizeDraft() {
  if (!draft_.text.isEmpty()) {
    TranscriptionResult result = std::exchange(draft_, {});
    result.isFinal = true;
    result.until = audio_.end();
    result.spoken = spoken(result);
    spokenFrom_ = audio_.end();
    signals_.post(&SpeechRun::resultReady, std::move(result));
  }
  audio_.clear();
}

bool SpeechDecoder::canChangeRecognizer(bool isUrgent) const {
  if (draft_.text.isEmpty() && !wasCut_) return true;
  return isUrgent && (hasNewFinal_ || draft_.text.isEmpty());
}

}  // namespace velun
