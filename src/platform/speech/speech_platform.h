// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audio/audio_format.h"
#include "platform/speech/analyzer_input.h"
#include "platform/speech/transcription_result.h"

#include <functional>
#include <memory>
#include <optional>
#include <QCoroTask>
#include <QString>
#include <QStringList>
#include <stop_token>

namespace velun {

/// Recognition of one language with progressive results: drafts while a phrase is unfinished, then
/// the phrase as it stays. Main thread.
class SpeechTranscriber {
 public:
  virtual ~SpeechTranscriber() = default;

  /// The supported locale identifier that it was made for.
  virtual QString locale() const = 0;

  /// Hears every result, in order, on the main thread. Set before the analyzer starts.
  std::function<void(const TranscriptionResult&)> onResult;

  /// Hears the end of the results, once: the error's text when they ended with one.
  std::function<void(const std::optional<QString>& error)> onEnd;

  /// Hears that recognition falls behind real time (true) or has caught up.
  std::function<void(bool)> onFallingBehind;
};

/// Runs one transcriber over one stream of audio. Main thread. Destroying it ends the run at once:
/// nothing of it runs afterwards, and an operation that waits returns.
class SpeechAnalyzer {
 public:
  virtual ~SpeechAnalyzer() = default;

  /// Begins to take audio from `input`. Throws `Failure` when recognition cannot be set up.
  virtual QCoro::Task<> start(std::shared_ptr<AnalyzerInputStream> input) = 0;

  /// Settles everything received so far: the draft becomes a final result.
  virtual QCoro::Task<> finalizeThroughEndOfInputSoFar() = 0;

  /// Settles everything up to the end of the finished input stream, then ends the results.
  virtual QCoro::Task<> finalizeAndFinishThroughEndOfInput() = 0;

  /// Ends at once; what was not settled is lost.
  virtual QCoro::Task<> cancelAndFinishNow() = 0;
};

/// A download that recognition of a language waits for. Main thread.
class AssetInstallationRequest {
 public:
  virtual ~AssetInstallationRequest() = default;

  /// Returns when the model is ready to use. Throws `Failure` with a text that says what to do,
  /// or `Cancelled` soon after a stop was requested.
  virtual QCoro::Task<> downloadAndInstall(std::stop_token stop) = 0;
};

/// The platform's speech services. Main thread.
class SpeechPlatform {
 public:
  virtual ~SpeechPlatform() = default;

  /// The identifiers of the locales that can be recognized, such as "en_US".
  virtual QCoro::Task<QStringList> supportedLocales() = 0;

  /// The supported locale for `localeID`: the same, else one of the same language and script.
  virtual QCoro::Task<std::optional<QString>> supportedLocale(QString equivalentTo) = 0;

  /// A transcriber with progressive results for a supported locale.
  virtual std::shared_ptr<SpeechTranscriber> makeTranscriber(const QString& locale) = 0;

  /// What has to be downloaded before `transcriber` can work; null when nothing has to be.
  virtual QCoro::Task<std::shared_ptr<AssetInstallationRequest>> assetInstallationRequest(
      std::shared_ptr<SpeechTranscriber> transcriber) = 0;

  /// The audio format that the transcriber works best with; none when there is none.
  virtual QCoro::Task<std::optional<AudioFormat>> bestAvailableAudioFormat(
      std::shared_ptr<SpeechTranscriber> compatibleWith) = 0;

  virtual std::unique_ptr<SpeechAnalyzer> makeAnalyzer(
      std::shared_ptr<SpeechTranscriber> transcriber) = 0;
};

}  // namespace velun
