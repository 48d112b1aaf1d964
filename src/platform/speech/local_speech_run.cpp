// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/local_speech_run.h"

#include "platform/foundation/failure.h"
#include "platform/speech/relay_texts.h"

#include <algorithm>
#include <QMetaObject>
#include <QScopeGuard>
#include <utility>

namespace velun {

namespace {

/// Seconds. In speech without pauses, a recognizer that is ready waits no longer for the end of a
/// phrase.
constexpr double kMaxWaitForPause = 10;

}  // namespace

LocalSpeechRun::LocalSpeechRun(std::vector<SpeechRecognizer> recognizers,
                               std::shared_ptr<SpeechInput> input, const Clock& clock,
                               std::unique_ptr<VoicePrinter> voices)
    : input_(std::move(input)),
      clock_(clock),
      voices_(std::move(voices)),
      recognizers_(std::move(recognizers)),
      decoder_(input_, clock, isCancelled_, signals_, voices_.get()) {
  const std::lock_guard lock(mutex_);
  startWorker(recognizers_.front(), true);
}

LocalSpeechRun::~LocalSpeechRun() {
  requestCancel();
  for (Worker& worker : workers_) worker.thread.join();
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
  if (voices_) voices_->cancel();
  {
    const std::lock_guard lock(mutex_);
    for (Worker& worker : workers_) cancel(worker);
    // It leaves, so it must not get the turn.
    successor_ = nullptr;
  }
  turnChanged_.notify_all();
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

void LocalSpeechRun::setRecognizers(std::vector<SpeechRecognizer> recognizers) {
  const std::lock_guard lock(mutex_);
  recognizers_ = std::move(recognizers);
  if (isOver_ || isCancelled_) return;
  const SpeechRecognizer* wanted = best();
  const Worker& last = successor_ ? *successor_ : *turn_;
  if (!wanted || wanted->id == last.id) return;
  if (successor_) cancel(*std::exchange(successor_, nullptr));
  turnChanged_.notify_all();
  if (wanted->id != turn_->id) startWorker(*wanted, false);
}

void LocalSpeechRun::forgetFailure(const QString& id) {
  const std::lock_guard lock(mutex_);
  failed_.removeAll(id);
}

/// Called with `mutex_` locked.
void LocalSpeechRun::startWorker(const SpeechRecognizer& recognizer, bool hasTurn) {
  Worker& worker = workers_.emplace_back();
  worker.id = recognizer.id;
  worker.title = recognizer.title;
  worker.isSuccessor = !hasTurn;
  (hasTurn ? turn_ : successor_) = &worker;
  try {
    worker.thread = std::thread([this, &worker, recognizer] { work(worker, recognizer); });
  } catch (const std::system_error&) {
    workers_.pop_back();
    if (hasTurn) throw;
    // The present recognizer goes on.
    successor_ = nullptr;
    failed_ << recognizer.id;
    signals_.post(&SpeechRun::noticedBriefly,
                  relay_texts::notLoaded(recognizer.title, turn_->title));
  }
}

void LocalSpeechRun::join(Worker& worker) {
  worker.thread.join();
  workers_.remove_if([&worker](const Worker& each) { return &each == &worker; });
}

void LocalSpeechRun::cancel(Worker& worker) {
  worker.isCancelled = true;
  if (worker.backend) worker.backend->cancel();
}

const SpeechRecognizer* LocalSpeechRun::best() const {
  const auto found =
      std::find_if(recognizers_.begin(), recognizers_.end(),
                   [this](const SpeechRecognizer& each) { return !failed_.contains(each.id); });
  return found == recognizers_.end() ? nullptr : &*found;
}

bool LocalSpeechRun::giveTurnToSuccessor() {
  if (!successor_) return false;
  turn_ = std::exchange(successor_, nullptr);
  turnChanged_.notify_all();
  return true;
}

void LocalSpeechRun::work(Worker& worker, SpeechRecognizer recognizer) {
  Step step{Step::Kind::load, std::move(recognizer)};
  while (step.kind == Step::Kind::load) step = run(worker, step.recognizer);
  if (step.kind == Step::Kind::endRun) {
    // The destructor joins the thread.
    endRun(step.error);
    return;
  }
  QMetaObject::invokeMethod(
      this, [this, &worker] { join(worker); }, Qt::QueuedConnection);
}

LocalSpeechRun::Step LocalSpeechRun::run(Worker& worker, const SpeechRecognizer& recognizer) {
  std::unique_ptr<RecognizerBackend> backend;
  const auto forget = qScopeGuard([this, &worker] { setBackend(worker, nullptr); });
  try {
    backend = recognizer.factory();
    setBackend(worker, backend.get());
    if (input_->isRecorded()) backend->expectRecording();
    if (worker.hasFailed) backend->standAlone();
    backend->load();
  } catch (const std::exception& failure) {
    return failedToLoad(worker, recognizer, descriptionOf(failure));
  }
  if (!waitForTurn(worker)) return {};
  takeTurn(worker, recognizer);
  try {
    if (!decode(*backend)) return {};
    return {Step::Kind::endRun};
  } catch (const std::exception& failure) {
    decoder_.endFailed(*backend);
    return failedToDecode(worker, recognizer, descriptionOf(failure));
  }
}

void LocalSpeechRun::setBackend(Worker& worker, RecognizerBackend* backend) {
  const std::lock_guard lock(mutex_);
  worker.backend = backend;
  if (backend && (isCancelled_ || worker.isCancelled)) backend->cancel();
}

/// False if the worker is no longer needed.
bool LocalSpeechRun::waitForTurn(Worker& worker) {
  std::unique_lock lock(mutex_);
  worker.isReady = true;
  worker.readySince = clock_.monotonicSeconds();
  // The present recognizer may be waiting for audio.
  if (turn_ != &worker) input_->interrupt();
  turnChanged_.wait(lock,
                    [this, &worker] { return turn_ == &worker || worker.isCancelled || isOver_; });
  return turn_ == &worker;
}

LocalSpeechRun::Step LocalSpeechRun::failedToLoad(Worker& worker,
                                                  const SpeechRecognizer& recognizer,
                                                  const QString& error) {
  std::unique_lock lock(mutex_);
  if (turn_ == &worker) {
    lock.unlock();
    const bool hasDecoded = restarts_.contains(recognizer.id);
    return replace(worker, recognizer, hasDecoded ? Fault::stopped : Fault::notLoaded, error);
  }
  if (worker.isCancelled || isOver_) return {};
  failed_ << recognizer.id;
  signals_.post(&LocalSpeechRun::recognizerFailed, recognizer.id);
  if (const SpeechRecognizer* next = best(); next && next->id != turn_->id) {
    worker.id = next->id;
    worker.title = next->title;
    return {Step::Kind::load, *next};
  }
  successor_ = nullptr;
  signals_.post(&SpeechRun::noticedBriefly, relay_texts::notLoaded(recognizer.title, turn_->title));
  return {};
}

void LocalSpeechRun::takeTurn(Worker& worker, const SpeechRecognizer& recognizer) {
  const bool hasChanged = std::exchange(worker.isSuccessor, false);
  if (fault_) {
    const auto& [title, fault] = *fault_;
    changeNotice_ = fault == Fault::notLoaded ? relay_texts::notLoaded(title, recognizer.title)
                                              : relay_texts::stopped(title, recognizer.title);
    fault_.reset();
  } else if (hasChanged) {
    changeNotice_.clear();
    signals_.post(&SpeechRun::noticedBriefly, relay_texts::changed(recognizer.title));
  }
}

/// False when another worker has taken over, true at the end of the run.
bool LocalSpeechRun::decode(RecognizerBackend& backend) {
  postNotice(backend);
  decoder_.begin(backend);
  while (!isCancelled_) {
    postNotice(backend);
    settleIfRequested(backend);
    if (!decoder_.decodeNext(backend)) return true;
    if (giveTurn()) return false;
  }
  return true;
}

void LocalSpeechRun::postNotice(const RecognizerBackend& backend) {
  QString notice = changeNotice_;
  if (const std::optional<QString> own = backend.notice()) {
    notice += (notice.isEmpty() ? QString() : QStringLiteral(" ")) + *own;
  }
  if (notice == shownNotice_) return;
  shownNotice_ = notice;
  signals_.post(&SpeechRun::noticed, notice);
}

void LocalSpeechRun::settleIfRequested(RecognizerBackend& backend) {
  std::size_t count = 0;
  {
    const std::lock_guard lock(mutex_);
    count = settleRequests_.size();
  }
  if (count == 0) return;
  // If the recognizer fails now, the next one settles them.
  decoder_.finalizePending(backend);
  const std::lock_guard lock(mutex_);
  const auto end = settleRequests_.begin() + static_cast<std::ptrdiff_t>(count);
  std::for_each(settleRequests_.begin(), end, [](const auto& request) { request.complete({}); });
  settleRequests_.erase(settleRequests_.begin(), end);
}

/// Whether the successor has taken over.
bool LocalSpeechRun::giveTurn() {
  const std::lock_guard lock(mutex_);
  if (!successor_ || !successor_->isReady) return false;
  const double waited = clock_.monotonicSeconds() - successor_->readySince;
  if (!decoder_.canChangeRecognizer(waited >= kMaxWaitForPause)) return false;
  return giveTurnToSuccessor();
}

LocalSpeechRun::Step LocalSpeechRun::failedToDecode(Worker& worker,
                                                    const SpeechRecognizer& recognizer,
                                                    const QString& error) {
  if (isCancelled_) return {Step::Kind::endRun};
  // Captions of live sound are to stop within moments; a recording has time to be decoded again.
  if (input_->isDrained() && !input_->isRecorded()) {
    decoder_.finalizeDraft();
    return {Step::Kind::endRun};
  }
  {
    const std::lock_guard lock(mutex_);
    if (giveTurnToSuccessor()) return {};
  }
  // It may end whenever it decodes this phrase.
  const bool failsAgain = decoder_.failuresInPhrase() > 1;
  // Minutes of a recording may wait behind the phrase: they are not skipped without a word.
  if (failsAgain && (hasOther(recognizer.id) || input_->isRecorded())) {
    return replace(worker, recognizer, Fault::stopped, error);
  }
  if (!restarts_[recognizer.id].take(clock_.monotonicSeconds())) {
    return replace(worker, recognizer, Fault::stopped, error);
  }
  if (failsAgain) decoder_.finalizeDraft();
  worker.hasFailed = true;
  return {Step::Kind::load, recognizer};
}

bool LocalSpeechRun::hasOther(const QString& id) {
  const std::lock_guard lock(mutex_);
  return std::any_of(recognizers_.begin(), recognizers_.end(), [&](const SpeechRecognizer& each) {
    return each.id != id && !failed_.contains(each.id);
  });
}

LocalSpeechRun::Step LocalSpeechRun::replace(Worker& worker, const SpeechRecognizer& recognizer,
                                             Fault fault, const QString& error) {
  if (isCancelled_) return {Step::Kind::endRun};
  const std::lock_guard lock(mutex_);
  failed_ << recognizer.id;
  signals_.post(&LocalSpeechRun::recognizerFailed, recognizer.id);
  if (!fault_) fault_.emplace(recognizer.title, fault);
  if (giveTurnToSuccessor()) return {};
  if (const SpeechRecognizer* next = best()) {
    worker.id = next->id;
    worker.title = next->title;
    return {Step::Kind::load, *next};
  }
  decoder_.finalizeDraft();
  Step end{Step::Kind::endRun};
  end.error = error;
  return end;
}

void LocalSpeechRun::endRun(const std::optional<QString>& error) {
  {
    const std::lock_guard lock(mutex_);
    isOver_ = true;
    if (successor_) cancel(*successor_);
  }
  turnChanged_.notify_all();
  const std::optional<QString> reported = isCancelled_ ? std::nullopt : error;
  QMetaObject::invokeMethod(
      this, [this, reported] { deliverEnd(reported); }, Qt::QueuedConnection);
  const std::lock_guard lock(mutex_);
  hasEnded_ = true;
  for (const auto& request : std::exchange(settleRequests_, {})) request.complete({});
}

}  // namespace velun
