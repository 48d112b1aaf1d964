// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/local_speech_run.h"

#include "platform/foundation/failure.h"

#include <algorithm>
#include <chrono>
#include <QMetaObject>
#include <QScopeGuard>
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

}  // namespace

LocalSpeechRun::LocalSpeechRun(RecognizerProvider::Factory factory,
                               std::shared_ptr<SpeechInput> input, const Clock& clock)
    : input_(std::move(input)), clock_(clock), backlog_(*input_, clock_) {
  thread_ = std::thread([this, factory = std::move(factory)] { run(factory); });
}

LocalSpeechRun::~LocalSpeechRun() {
  requestCancel();
  thread_.join();
  completeEnd();
}

QCoro::Task<> LocalSpeechRun::settle() {
  const OneShot<std::monostate> settled;
  {
    const std::lock_guard lock(mutex_);
    if (hasEnded_) {
      settled.complete({});
    } else {
      settleRequests_.push_back(settled);
    }
  }
  input_->interrupt();
  co_await settled;
}

QCoro::Task<> LocalSpeechRun::finish() {
  const OneShot<std::monostate> ended = awaitEnd();
  input_->finish();
  co_await ended;
}

QCoro::Task<> LocalSpeechRun::cancel() {
  const OneShot<std::monostate> ended = awaitEnd();
  requestCancel();
  co_await ended;
}

void LocalSpeechRun::requestCancel() {
  isCancelled_ = true;
  {
    const std::lock_guard lock(mutex_);
    if (backend_) backend_->cancel();
  }
  input_->interrupt();
}

OneShot<std::monostate> LocalSpeechRun::awaitEnd() {
  OneShot<std::monostate> request;
  if (hasDeliveredEnd_) {
    request.complete({});
  } else {
    endRequests_.push_back(request);
  }
  return request;
}

void LocalSpeechRun::completeEnd() {
  hasDeliveredEnd_ = true;
  for (const auto& request : std::exchange(endRequests_, {})) request.complete({});
}

void LocalSpeechRun::deliverEnd(const std::optional<QString>& error) {
  // Waiting coroutines continue from the event loop, after the slots of the signal.
  completeEnd();
  Q_EMIT ended(error);
}

void LocalSpeechRun::setBackend(RecognizerBackend* backend) {
  const std::lock_guard lock(mutex_);
  backend_ = backend;
  if (backend_ && isCancelled_) backend_->cancel();
}

void LocalSpeechRun::run(const RecognizerProvider::Factory& factory) {
  std::optional<QString> error;
  try {
    const std::unique_ptr<RecognizerBackend> backend = factory();
    setBackend(backend.get());
    const auto forget = qScopeGuard([this] { setBackend(nullptr); });
    loadAndDecode(*backend);
  } catch (const std::exception& failure) {
    error = descriptionOf(failure);
  }
  if (isCancelled_) error.reset();
  QMetaObject::invokeMethod(
      this, [this, error] { deliverEnd(error); }, Qt::QueuedConnection);
  const std::lock_guard lock(mutex_);
  hasEnded_ = true;
  for (const auto& request : std::exchange(settleRequests_, {})) request.complete({});
}

void LocalSpeechRun::loadAndDecode(RecognizerBackend& backend) {
  backend.load();
  backlog_.recognizerLoaded();
  postNotice(backend);
  try {
    decode(backend);
  } catch (const std::exception&) {
    try {
      postResults(backend);
    } catch (const std::exception&) {
      // It has no more results.
    }
    throw;
  }
}

void LocalSpeechRun::postNotice(const RecognizerBackend& backend) {
  const std::optional<QString> notice = backend.notice();
  if (!notice || notice == postedNotice_) return;
  postedNotice_ = notice;
  post([this, text = *notice] { Q_EMIT noticed(text); });
}

template <class Signal>
void LocalSpeechRun::post(const Signal& signal) {
  QMetaObject::invokeMethod(
      this,
      [this, signal] {
        if (!isCancelled_) signal();
      },
      Qt::QueuedConnection);
}

void LocalSpeechRun::decode(RecognizerBackend& backend) {
  double lastAudio = clock_.monotonicSeconds();
  double decodedUntil = lastAudio;
  while (!isCancelled_) {
    const bool isBusy = backend.undecodedSeconds() > AudioBacklog::kMaxUndecodedSeconds;
    const bool isPolling = backend.expectsResults();
    std::optional<SpeechSamples> input;
    if (isBusy) {
      backend.awaitDecoding(kPollInterval);
    } else {
      input = isPolling ? input_->next(kPollInterval) : input_->next();
    }
    if (isCancelled_) return;
    const double now = clock_.monotonicSeconds();
    if (input) {
      lastAudio = now;
      accept(backend, *input);
    } else if (input_->isDrained()) {
      backend.finalize();
      postResults(backend);
      return;
    } else if (isPolling && !isBusy && now - lastAudio > kMaxBufferInterval) {
      decodedUntil = std::max(decodedUntil, lastAudio);
      acceptSilence(backend, std::min(now - decodedUntil, kMaxSilence));
      decodedUntil = now;
    }
    postResults(backend);
    postNotice(backend);
    limitBacklog(backend);
    completeSettleRequests(backend);
  }
}

void LocalSpeechRun::accept(RecognizerBackend& backend, const SpeechSamples& input) {
  if (input.followsGap) backend.skip();
  backend.acceptAudio(input.samples);
}

void LocalSpeechRun::limitBacklog(const RecognizerBackend& backend) {
  const AudioBacklog::Update update = backlog_.update(backend.undecodedSeconds());
  if (update.isBehind) {
    post([this, isBehind = *update.isBehind] { Q_EMIT lagChanged(isBehind); });
  }
  if (update.skippedSeconds > 0) {
    post([this, seconds = update.skippedSeconds] { Q_EMIT skipped(seconds); });
  }
  if (update.isTooSlow) {
    post([this, advice = backend.adviceIfTooSlow()] { Q_EMIT tooSlow(advice); });
  }
}

void LocalSpeechRun::acceptSilence(RecognizerBackend& backend, double seconds) {
  const std::vector<float> silence(static_cast<std::size_t>(seconds * kSpeechSampleRate), 0.0F);
  backend.acceptAudio(silence);
}

void LocalSpeechRun::postResults(RecognizerBackend& backend) {
  for (TranscriptionResult& result : backend.poll()) {
    post([this, result = std::move(result)] { Q_EMIT resultReady(result); });
  }
}

void LocalSpeechRun::completeSettleRequests(RecognizerBackend& backend) {
  std::vector<OneShot<std::monostate>> requests;
  {
    const std::lock_guard lock(mutex_);
    requests = std::exchange(settleRequests_, {});
  }
  if (requests.empty()) return;
  // Only the audio that is pending now: on a slow machine with continuous audio, the stream might
  // never become empty.
  for (double waiting = input_->pendingSeconds(); waiting > 0 && !isCancelled_;) {
    const std::optional<SpeechSamples> input = input_->tryNext();
    if (!input) break;
    waiting -= input->seconds();
    accept(backend, *input);
    postResults(backend);
  }
  if (!isCancelled_) {
    backend.finalize();
    postResults(backend);
  }
  for (const auto& request : requests) request.complete({});
}

}  // namespace velun
