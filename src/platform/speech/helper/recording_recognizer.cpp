// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/recording_recognizer.h"

#include <algorithm>
#include <utility>

namespace velun {

namespace {

/// More would take much memory and gain little.
constexpr unsigned kMaxThreads = 4;
/// Phrases that wait for a thread: enough for it to go on at once, and so few that the end of the
/// recording does not take long.
constexpr std::size_t kMaxWaiting = 1;

}  // namespace

RecordingRecognizer::RecordingRecognizer(const vosk::Library& library,
                                         const RecognizerSettings& settings)
    : language_(settings.language) {
  const unsigned count = std::clamp(std::thread::hardware_concurrency(), 1U, kMaxThreads);
  hearings_.reserve(count);
  hearings_.emplace_back(VoskDecoder(library, settings));
  while (hearings_.size() < count) hearings_.push_back(hearings_.front().another());
  for (PhraseHearing& hearing : hearings_) {
    threads_.emplace_back([this, &hearing](const std::stop_token& stop) { work(hearing, stop); });
  }
}

RecordingRecognizer::~RecordingRecognizer() = default;

void RecordingRecognizer::accept(std::span<const float> samples) {
  for (PhraseFinder::Step& step : phrases_.accept(samples)) collect(std::move(step));
}

void RecordingRecognizer::finalize() {
  if (auto step = phrases_.end()) collect(*std::move(step));
  awaitUnheard(0);
}

bool RecordingRecognizer::isInPhrase() const {
  const std::lock_guard lock(mutex_);
  return phrases_.isInPhrase() || !all_.empty();
}

void RecordingRecognizer::collect(PhraseFinder::Step step) {
  if (step.isAgain) pieces_.clear();
  pieces_.push_back(std::move(step.audio));
  if (!step.ended) return;
  const auto phrase = std::make_shared<Phrase>();
  phrase->pieces = std::exchange(pieces_, {});
  phrase->ended = *std::move(step.ended);
  awaitUnheard(threads_.size() + kMaxWaiting - 1);
  {
    const std::lock_guard lock(mutex_);
    unheard_.push_back(phrase);
    all_.push_back(phrase);
    ++unheardCount_;
  }
  changed_.notify_all();
}

void RecordingRecognizer::awaitUnheard(std::size_t atMost) {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this, atMost] { return unheardCount_ <= atMost; });
}

void RecordingRecognizer::work(PhraseHearing& hearing, const std::stop_token& stop) {
  while (const std::shared_ptr<Phrase> phrase = nextPhrase(stop)) {
    try {
      for (const std::vector<float>& piece : phrase->pieces) hearing.accept(piece);
      phrase->words = hearing.finish(phrase->ended);
    } catch (...) {
      phrase->failure = std::current_exception();
    }
    {
      const std::lock_guard lock(mutex_);
      phrase->isHeard = true;
      --unheardCount_;
    }
    changed_.notify_all();
  }
}

std::shared_ptr<RecordingRecognizer::Phrase> RecordingRecognizer::nextPhrase(
    const std::stop_token& stop) {
  std::unique_lock lock(mutex_);
  if (!changed_.wait(lock, stop, [this] { return !unheard_.empty(); })) return nullptr;
  const std::shared_ptr<Phrase> phrase = unheard_.front();
  unheard_.pop_front();
  return phrase;
}

std::vector<TranscriptionResult> RecordingRecognizer::takeResults() {
  std::vector<TranscriptionResult> results;
  const std::lock_guard lock(mutex_);
  for (; !all_.empty() && all_.front()->isHeard; all_.pop_front()) {
    Phrase& phrase = *all_.front();
    if (phrase.failure) std::rethrow_exception(phrase.failure);
    if (phrase.words.empty()) continue;
    results.push_back(finalResultOf(std::move(phrase.words), phrase.ended, language_));
  }
  return results;
}

}  // namespace velun
