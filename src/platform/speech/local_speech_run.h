// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/clock.h"
#include "platform/foundation/one_shot.h"
#include "platform/speech/audio_backlog.h"
#include "platform/speech/recognizer_provider.h"
#include "platform/speech/speech_platform.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <thread>
#include <variant>
#include <vector>

namespace velun {

/// Runs one recognizer on a decode thread of its own, where it is created, fed and destroyed, and
/// posts its results to the main thread in order. Audio gathers in the stream while the recognizer
/// loads, so that nothing said meanwhile is lost; a recognizer that cannot be loaded ends the run
/// with its error.
class LocalSpeechRun final : public SpeechRun {
 public:
  /// Starts the thread. `clock` must outlive the run.
  LocalSpeechRun(RecognizerProvider::Factory factory, std::shared_ptr<SpeechInput> input,
                 const Clock& clock);
  /// Cancels and joins the thread.
  ~LocalSpeechRun() override;

  QCoro::Task<> settle() override;
  QCoro::Task<> finish() override;
  QCoro::Task<> cancel() override;

 private:
  // Main thread.
  void requestCancel();
  OneShot<std::monostate> awaitEnd();
  void completeEnd();
  void deliverEnd(const std::optional<QString>& error);

  // Decode thread.
  void run(const RecognizerProvider::Factory& factory);
  void setBackend(RecognizerBackend* backend);
  void loadAndDecode(RecognizerBackend& backend);
  void postNotice(const RecognizerBackend& backend);
  void decode(RecognizerBackend& backend);
  void accept(RecognizerBackend& backend, const SpeechSamples& input);
  void limitBacklog(const RecognizerBackend& backend);
  /// Emits a signal on the main thread, unless the run is cancelled.
  template <class Signal>
  void post(const Signal& signal);
  void acceptSilence(RecognizerBackend& backend, double seconds);
  void postResults(RecognizerBackend& backend);
  void completeSettleRequests(RecognizerBackend& backend);

  std::shared_ptr<SpeechInput> input_;
  const Clock& clock_;
  std::atomic<bool> isCancelled_ = false;
  /// Operations that wait for the end. Each has one of its own, because a `OneShot` resumes only
  /// one coroutine. Main thread.
  std::vector<OneShot<std::monostate>> endRequests_;
  bool hasDeliveredEnd_ = false;  // main thread
  std::mutex mutex_;
  RecognizerBackend* backend_ = nullptr;                 // while it exists; guarded by mutex_
  std::vector<OneShot<std::monostate>> settleRequests_;  // guarded by mutex_
  bool hasEnded_ = false;                                // guarded by mutex_
  AudioBacklog backlog_;                                 // decode thread
  std::optional<QString> postedNotice_;                  // decode thread
  std::thread thread_;
};

}  // namespace velun
