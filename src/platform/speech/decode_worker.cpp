// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/decode_worker.h"

#include "platform/foundation/failure.h"

#include <algorithm>
#include <chrono>
#include <QMetaObject>
#include <QScopeGuard>
#include <utility>

namespace velun {

namespace {

using namespace std::chrono_literals;

/// How often a recognizer that settles something is asked for it while no audio comes.
constexpr auto kPollInterval = 20ms;
/// A source that has nothing to play may deliver nothing at all. After this long without audio,
/// which no busy machine needs to bring the next piece, the gap is heard as the silence it is: a
/// phrase then ends where it ended, and what follows is not joined to it.
constexpr auto kGap = 250ms;
/// A program that was halted for an hour has not heard an hour of silence.
constexpr std::chrono::nanoseconds kLongestGap = 1s;
constexpr double kSampleRate = 16000;

using SteadyClock = std::chrono::steady_clock;

}  // namespace

DecodeWorker::DecodeWorker(RecognizerProvider::Factory factory,
                           std::shared_ptr<AnalyzerInputStream> input, Listener listener,
                           QObject* receiver)
    : input_(std::move(input)),
      listener_(std::make_shared<const Listener>(std::move(listener))),
      receiver_(receiver) {
  thread_ = std::thread([this, factory = std::move(factory)] { run(factory); });
}

DecodeWorker::~DecodeWorker() {
  cancel();
  thread_.join();
}

OneShot<std::monostate> DecodeWorker::finalizeSoFar() {
  OneShot<std::monostate> request;
  {
    const std::lock_guard lock(mutex_);
    if (hasEnded_) {
      request.complete({});
    } else {
      finalizeRequests_.push_back(request);
    }
  }
  input_->interrupt();
  return request;
}

void DecodeWorker::cancel() {
  *isCancelled_ = true;
  {
    const std::lock_guard lock(mutex_);
    if (backend_) backend_->cancel();
  }
  input_->interrupt();
}

void DecodeWorker::setBackend(RecognizerBackend* backend) {
  const std::lock_guard lock(mutex_);
  backend_ = backend;
  if (backend_ && *isCancelled_) backend_->cancel();
}

void DecodeWorker::run(const RecognizerProvider::Factory& factory) {
  std::optional<QString> error;
  try {
    const std::unique_ptr<RecognizerBackend> backend = factory();
    setBackend(backend.get());
    const auto forget = qScopeGuard([this] { setBackend(nullptr); });
    serve(*backend);
  } catch (const std::exception& failure) {
    error = descriptionOf(failure);
  }
  const bool hasFailed = error && !*isCancelled_;
  QMetaObject::invokeMethod(
      receiver_,
      [listener = listener_, error = hasFailed ? error : std::nullopt] { listener->onEnd(error); },
      Qt::QueuedConnection);
  const std::lock_guard lock(mutex_);
  hasEnded_ = true;
  for (const auto& request : std::exchange(finalizeRequests_, {})) request.complete({});
}

void DecodeWorker::serve(RecognizerBackend& backend) {
  backend.load();
  try {
    decode(backend);
  } catch (const std::exception&) {
    try {
      deliverResults(backend);
    } catch (const std::exception&) {
      // There is nothing more to be had of it.
    }
    throw;
  }
}

void DecodeWorker::decode(RecognizerBackend& backend) {
  auto lastAudio = SteadyClock::now();
  auto heardUntil = lastAudio;
  while (!*isCancelled_) {
    const bool isPolling = backend.expectsResults();
    const std::optional<AnalyzerInput> input =
        isPolling ? input_->next(kPollInterval) : input_->next();
    if (*isCancelled_) return;
    if (input) {
      lastAudio = SteadyClock::now();
      accept(backend, *input);
    } else if (input_->isDrained()) {
      backend.finalize();
      deliverResults(backend);
      return;
    } else if (isPolling && SteadyClock::now() - lastAudio > kGap) {
      heardUntil = std::max(heardUntil, lastAudio);
      const auto now = SteadyClock::now();
      acceptSilence(backend, std::min<std::chrono::nanoseconds>(now - heardUntil, kLongestGap));
      heardUntil = now;
    }
    deliverResults(backend);
    answerFinalize(backend);
  }
}

void DecodeWorker::accept(RecognizerBackend& backend, const AnalyzerInput& input) {
  backend.acceptAudio(input.buffer.floatSamples());
  if (const auto isBehind = lag_.update(input_->pendingSeconds())) {
    post([listener = listener_, behind = *isBehind] { listener->onFallingBehind(behind); });
  }
}

void DecodeWorker::acceptSilence(RecognizerBackend& backend, std::chrono::nanoseconds duration) {
  const double seconds = std::chrono::duration<double>(duration).count();
  const std::vector<float> silence(static_cast<std::size_t>(seconds * kSampleRate), 0.0F);
  backend.acceptAudio(silence);
}

void DecodeWorker::deliverResults(RecognizerBackend& backend) {
  for (TranscriptionResult& result : backend.poll()) {
    post([listener = listener_, result = std::move(result)] { listener->onResult(result); });
  }
}

void DecodeWorker::answerFinalize(RecognizerBackend& backend) {
  std::vector<OneShot<std::monostate>> requests;
  {
    const std::lock_guard lock(mutex_);
    requests = std::exchange(finalizeRequests_, {});
  }
  if (requests.empty()) return;
  // Only what was there when it was asked: with a slow machine and audio that goes on, waiting for
  // an empty stream could last for ever.
  for (double waiting = input_->pendingSeconds(); waiting > 0 && !*isCancelled_;) {
    const std::optional<AnalyzerInput> input = input_->tryNext();
    if (!input) break;
    waiting -= input->seconds();
    accept(backend, *input);
    deliverResults(backend);
  }
  if (!*isCancelled_) {
    backend.finalize();
    deliverResults(backend);
  }
  for (const auto& request : requests) request.complete({});
}

void DecodeWorker::post(std::function<void()> call) {
  QMetaObject::invokeMethod(
      receiver_,
      [isCancelled = isCancelled_, call = std::move(call)] {
        if (!*isCancelled) call();
      },
      Qt::QueuedConnection);
}

}  // namespace velun
