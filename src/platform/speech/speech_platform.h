// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/recognizer_candidate.h"
#include "platform/speech/speech_input.h"
#include "platform/speech/transcription_result.h"

#include <memory>
#include <optional>
#include <QCoroTask>
#include <QObject>
#include <QString>
#include <QStringList>
#include <stop_token>
#include <vector>

namespace velun {

/// A speech model that can be downloaded. Main thread.
class SpeechModelOffer {
 public:
  virtual ~SpeechModelOffer() = default;

  /// What has to be downloaded, in bytes.
  virtual qint64 downloadBytes() const = 0;

  /// Completes when the model is ready to use. Throws `Failure` with a text that says what to do,
  /// or `Cancelled` soon after a stop was requested.
  virtual QCoro::Task<> install(std::stop_token stop) = 0;
};

/// How a language can be recognized.
struct SpeechSupport {
  /// The supported locale that serves the requested one.
  QString locale;
  /// Null when a model is installed, or when none can be downloaded without a question.
  std::shared_ptr<SpeechModelOffer> offer;
  /// No model is installed, and the user has to agree to the licence of each before its download.
  bool needsAgreement = false;
};

/// One recognizer at work on one stream of audio. Destroying it ends the run at once: it emits
/// nothing more, and pending operations complete. The operations never fail. Main thread.
class SpeechRun : public QObject {
  Q_OBJECT

 public:
  /// Finalizes the audio received so far: completes after its results were delivered, or when the
  /// run ends.
  virtual QCoro::Task<> settle() = 0;

  /// Ends the input stream. Completes after the remaining results and `ended` were delivered.
  virtual QCoro::Task<> finish() = 0;

  /// Ends the run soon and discards undelivered results. Completes after `ended`.
  virtual QCoro::Task<> cancel() = 0;

 Q_SIGNALS:
  /// A draft or a final result, in the order of the audio.
  void resultReady(const velun::TranscriptionResult& result);
  /// Decoding has fallen behind the audio, or has caught up.
  void lagChanged(bool isBehind);
  /// Audio of so many seconds was left out, because decoding was too far behind.
  void skipped(double seconds);
  /// This machine cannot keep up with the audio; once in a run. `advice` is localized.
  void tooSlow(const QString& advice);
  /// Something is missing and captions go on without it, or with a lesser recognizer. `notice` is
  /// localized; empty when that is over.
  void noticed(const QString& notice);
  /// To be shown for a moment: another recognizer goes on, or could not. `notice` is localized.
  void noticedBriefly(const QString& notice);
  /// The last signal. `error` is the text of the failure that ended the run, if one did.
  void ended(const std::optional<QString>& error);
};

/// The speech services of this system. Main thread.
class SpeechPlatform {
 public:
  virtual ~SpeechPlatform() = default;

  /// The identifiers of the locales that can be recognized, such as "en_US".
  virtual QCoro::Task<QStringList> supportedLocales() = 0;

  /// How `localeID`, or another locale of the same language and script, can be recognized;
  /// nullopt when it cannot.
  virtual std::optional<SpeechSupport> support(const QString& localeID) = 0;

  /// The recognizers of a supported locale in the order of use: the user's choice, then those that
  /// suit this machine from best to worst, then the others. Installed or not.
  virtual std::vector<RecognizerCandidate> candidates(const QString& locale) const = 0;

  /// The download of a candidate; null when it needs none.
  virtual std::shared_ptr<SpeechModelOffer> offer(const QString& locale, const QString& id) = 0;

  /// Starts recognizing `input` in a supported locale with the first installed candidate. Its
  /// signals are emitted from the event loop
  /// only, so connect to them right after the call. Throws `Failure` when no model is installed.
  virtual std::unique_ptr<SpeechRun> start(const QString& locale,
                                           std::shared_ptr<SpeechInput> input) = 0;
};

}  // namespace velun
