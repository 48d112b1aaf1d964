// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "audio/audio_input_kind.h"
#include "audio/run_status.h"
#include "audio/speech_recognizing.h"
#include "platform/audio/audio_platform.h"
#include "platform/foundation/clock.h"
#include "platform/speech/speech_platform.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <QPointer>
#include <QUuid>
#include <stop_token>
#include <utility>

namespace velun {

class AudioFeeder;
class EchoCanceller;

/// Runs one recognition pass of one target at a time: a source captures sound, the feeder converts
/// it, a `SpeechRun` recognizes it, and the results become events. Main thread.
class SpeechRecognitionEngine final : public SpeechRecognizing {
  Q_OBJECT

 public:
  /// How long a stop waits for the rest of the audio to be decoded. Finalizing a long phrase takes
  /// less on a machine that keeps up.
  static constexpr std::chrono::milliseconds kDefaultFinishTimeout{1800};

  /// The first three must outlive the engine. `echo`, unless it is null, gets what the computer
  /// plays and clears what a microphone hears. After `finishTimeout` a stop gives up what is not
  /// decoded.
  SpeechRecognitionEngine(SpeechPlatform& speech, AudioPlatform& audio, Clock& clock,
                          std::shared_ptr<EchoCanceller> echo = nullptr,
                          std::chrono::milliseconds finishTimeout = kDefaultFinishTimeout);
  ~SpeechRecognitionEngine() override;

  QCoro::Task<> start(QString localeID, CaptionTargets targets, std::stop_token stop = {}) override;
  QCoro::Task<> stop() override;
  bool isDownloading() const override { return isDownloading_; }
  std::optional<AudioInput> missingInput() const override;
  std::vector<float> meterBands() const override;

 private:
  /// What one run was started with.
  struct Run {
    Run(QUuid runToken, QString localeID, AudioTarget audioTarget)
        : token(runToken), sourceID(std::move(localeID)), target(std::move(audioTarget)) {}
    QUuid token;
    QString sourceID;
    AudioTarget target;

    AudioInput input() const { return inputOf(target.kind); }
  };

  QCoro::Task<> setUp(Run run, std::stop_token stop);
  QCoro::Task<> installModel(std::shared_ptr<SpeechModelOffer> offer, QUuid token,
                             std::stop_token stop);
  /// Throws `Cancelled` once a stop was requested, the run was replaced or the engine is gone.
  static void checkCancellation(const QPointer<SpeechRecognitionEngine>& engine, QUuid token,
                                const std::stop_token& stop);
  void setDownloading(bool isDownloading);
  void startRecognition(const QString& locale, const Run& run);
  void followStatus(const SpeechRun& recognition);
  QCoro::Task<> startAudio(Run run, std::stop_token stop);
  void handle(const TranscriptionResult& result);
  Instant wallTime(double monotonicSeconds) const;
  void followSource(const AudioSource& source, QUuid token);
  void setDeviceMissing(bool isMissing);
  void checkSilenceLater(QUuid token);
  QCoro::Task<> checkSilence(QUuid token);
  /// Completes after the last results of the recognizer.
  QCoro::Task<> finishRecognition();
  void giveUpUndecoded();
  QCoro::Task<> cancelRecognition();
  void fail(const FailureEvent& failure);
  void forgetRun();

  SpeechPlatform& speech_;
  AudioPlatform& audioPlatform_;
  Clock& clock_;
  std::shared_ptr<EchoCanceller> echo_;
  const std::chrono::milliseconds finishLimit_;

  std::unique_ptr<SpeechRun> recognition_;
  std::shared_ptr<SpeechInput> input_;
  std::unique_ptr<AudioFeeder> feeder_;
  std::unique_ptr<AudioSource> audio_;
  std::optional<std::stop_callback<std::function<void()>>> cancelAudio_;
  std::unique_ptr<ScheduledCall> silenceCheck_;
  /// While a stop waits for the recognizer.
  std::unique_ptr<ScheduledCall> finishTimeout_;
  /// Identifies the current run; work for another one is stale.
  QUuid engineToken_;
  /// The run of `recognition_`.
  std::optional<Run> run_;
  bool isStarting_ = false;
  bool isDownloading_ = false;
  /// Why recognition or the audio source failed during the start.
  std::optional<FailureEvent> startFailure_;
  /// What the start is doing.
  FailureStage startStage_ = FailureStage::recognition;
  /// The last draft, and when its phrase had its first.
  QString volatileText_;
  double draftedSince_ = 0;
  bool isDeviceMissing_ = false;
  RunStatus status_;
};

}  // namespace velun
