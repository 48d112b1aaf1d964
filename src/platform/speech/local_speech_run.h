// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/clock.h"
#include "platform/foundation/one_shot.h"
#include "platform/speech/restart_allowance.h"
#include "platform/speech/run_signals.h"
#include "platform/speech/speech_decoder.h"
#include "platform/speech/speech_platform.h"
#include "platform/speech/speech_recognizer.h"

#include <atomic>
#include <condition_variable>
#include <list>
#include <map>
#include <memory>
#include <mutex>
#include <thread>
#include <variant>
#include <vector>

namespace velun {

/// Recognizes one stream of audio with one recognizer at a time, on a decode thread, where the
/// recognizer is created, fed and destroyed, and posts results to the main thread in order. Audio
/// gathers in the stream while a recognizer loads, so that nothing said meanwhile is lost.
///
/// A recognizer that ends unexpectedly is started again, as often as `RestartAllowance` permits.
/// One that cannot be loaded or ends too often is replaced by the best of the others. When none is
/// left, its error ends the run. A better recognizer is loaded on a thread of its own while the
/// present one goes on, and takes its turn at the end of a phrase. The next recognizer also decodes
/// the audio whose words were not final.
class LocalSpeechRun final : public SpeechRun {
  Q_OBJECT

 public:
  /// Starts a thread with the first of `recognizers`, which are sorted from best to worst and not
  /// empty. `clock` must outlive the run. With `voices`, final results tell the voice.
  LocalSpeechRun(std::vector<SpeechRecognizer> recognizers, std::shared_ptr<SpeechInput> input,
                 const Clock& clock, std::unique_ptr<VoicePrinter> voices = nullptr);
  /// Cancels and joins the threads.
  ~LocalSpeechRun() override;

  QCoro::Task<> settle() override;
  QCoro::Task<> finish() override;
  QCoro::Task<> cancel() override;

  /// Replaces the list, for failures to come. If the present recognizer is not the best of it, that
  /// one takes over at the end of a phrase. Recognizers that failed in this run are not used again.
  void setRecognizers(std::vector<SpeechRecognizer> recognizers);

  /// Allows using a recognizer that failed again, because it was repaired or the user wants it.
  void forgetFailure(const QString& id);

 Q_SIGNALS:
  /// The recognizer could not be loaded or ended too often.
  void recognizerFailed(const QString& id);

 private:
  /// One thread. Its members but `thread` are guarded by `mutex_`.
  struct Worker {
    QString id;                            ///< of its recognizer
    QString title;                         ///< of its recognizer
    RecognizerBackend* backend = nullptr;  ///< while it exists
    bool isCancelled = false;
    bool hasFailed = false;    ///< a recognizer ended in this worker; of its thread
    bool isSuccessor = false;  ///< has not had a turn
    bool isReady = false;      ///< loaded, and waits for its turn
    double readySince = 0;     ///< in the clock's monotonic seconds
    std::thread thread;
  };
  /// What a worker does after a recognizer.
  struct Step {
    enum class Kind { load, leave, endRun };
    Kind kind = Kind::leave;
    SpeechRecognizer recognizer = {};   ///< to load
    std::optional<QString> error = {};  ///< that ends the run
  };
  enum class Fault { notLoaded, stopped };

  // Main thread.
  void requestCancel();
  OneShot<std::monostate> awaitEnd();
  void completeEnd();
  void deliverEnd(const std::optional<QString>& error);
  void startWorker(const SpeechRecognizer& recognizer, bool hasTurn);
  void join(Worker& worker);

  // With `mutex_` locked.
  void cancel(Worker& worker);
  /// The first recognizer that has not failed; null if all have.
  const SpeechRecognizer* best() const;
  /// False if there is none.
  bool giveTurnToSuccessor();

  // A worker's thread.
  void work(Worker& worker, SpeechRecognizer recognizer);
  Step run(Worker& worker, const SpeechRecognizer& recognizer);
  void setBackend(Worker& worker, RecognizerBackend* backend);
  bool waitForTurn(Worker& worker);
  Step failedToLoad(Worker& worker, const SpeechRecognizer& recognizer, const QString& error);
  bool hasOther(const QString& id);

  // The thread of the worker whose turn it is.
  void takeTurn(Worker& worker, const SpeechRecognizer& recognizer);
  bool decode(RecognizerBackend& backend);
  void settleIfRequested(RecognizerBackend& backend);
  bool giveTurn();
  Step failedToDecode(Worker& worker, const SpeechRecognizer& recognizer, const QString& error);
  Step replace(Worker& worker, const SpeechRecognizer& recognizer, Fault fault,
               const QString& error);
  void postNotice(const RecognizerBackend& backend);
  void endRun(const std::optional<QString>& error);

  std::shared_ptr<SpeechInput> input_;
  const Clock& clock_;
  const std::unique_ptr<VoicePrinter> voices_;  ///< null if voices are not wanted
  std::atomic<bool> isCancelled_ = false;
  const RunSignals signals_{*this, isCancelled_};
  /// Operations that wait for the end. Each has one of its own, because a `OneShot` resumes only
  /// one coroutine. Main thread.
  std::vector<OneShot<std::monostate>> endRequests_;
  bool hasDeliveredEnd_ = false;  // main thread

  std::mutex mutex_;
  std::condition_variable turnChanged_;
  // Guarded by mutex_:
  std::vector<SpeechRecognizer> recognizers_;
  QStringList failed_;           ///< ids
  Worker* turn_ = nullptr;       ///< the one that decodes
  Worker* successor_ = nullptr;  ///< the one that is to take over, while it loads or waits
  bool isOver_ = false;
  std::vector<OneShot<std::monostate>> settleRequests_;
  bool hasEnded_ = false;

  // Of the thread whose turn it is:
  SpeechDecoder decoder_;
  std::map<QString, RestartAllowance> restarts_;  ///< by recognizer
  /// The recognizer that failed since the last one was loaded, and how.
  std::optional<std::pair<QString, Fault>> fault_;
  QString changeNotice_;  ///< why the present recognizer is used, if others failed
  QString shownNotice_;

  std::list<Worker> workers_;  // main thread
};

}  // namespace velun
