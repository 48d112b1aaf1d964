// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/one_shot.h"
#include "platform/speech/analyzer_input.h"
#include "platform/speech/lag_watch.h"
#include "platform/speech/recognizer_provider.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <QObject>
#include <QString>
#include <thread>
#include <variant>
#include <vector>

namespace velun {

/// The thread on which one recognizer is made, fed, asked for results and destroyed. What it finds
/// is posted to the main thread in order. Made, commanded and destroyed on the main thread.
class DecodeWorker {
 public:
  /// Called on the main thread.
  struct Listener {
    std::function<void(const TranscriptionResult&)> onResult;
    /// Once, as the last call; the recognizer has been freed by then.
    std::function<void(const std::optional<QString>& error)> onEnd;
    std::function<void(bool)> onFallingBehind;
  };

  /// Starts the thread. Results are posted to `receiver`, which must outlive the worker.
  DecodeWorker(RecognizerProvider::Factory factory, std::shared_ptr<AnalyzerInputStream> input,
               Listener listener, QObject* receiver);
  /// Cancels and waits for the thread.
  ~DecodeWorker();

  /// Asks that everything received so far be settled; answered after the results were delivered,
  /// or at once when the run has ended.
  OneShot<std::monostate> finalizeSoFar();

  /// Ends the run soon; results that were not delivered yet are dropped.
  void cancel();

 private:
  void run(const RecognizerProvider::Factory& factory);
  void setBackend(RecognizerBackend* backend);
  void serve(RecognizerBackend& backend);
  void decode(RecognizerBackend& backend);
  void accept(RecognizerBackend& backend, const AnalyzerInput& input);
  void acceptSilence(RecognizerBackend& backend, std::chrono::nanoseconds duration);
  void deliverResults(RecognizerBackend& backend);
  void answerFinalize(RecognizerBackend& backend);
  void post(std::function<void()> call);

  std::shared_ptr<AnalyzerInputStream> input_;
  std::shared_ptr<const Listener> listener_;
  QObject* receiver_;
  std::shared_ptr<std::atomic<bool>> isCancelled_ = std::make_shared<std::atomic<bool>>(false);
  std::mutex mutex_;
  /// The recognizer while there is one; guarded by mutex_.
  RecognizerBackend* backend_ = nullptr;
  std::vector<OneShot<std::monostate>> finalizeRequests_;  // guarded by mutex_
  bool hasEnded_ = false;                                  // guarded by mutex_
  LagWatch lag_;                                           // decode thread
  std::thread thread_;
};

}  // namespace velun
