// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "audio/speech_recognition_engine.h"
#include "platform/foundation/system_clock.h"
#include "platform/speech/local_speech_platform.h"
#include "platform/speech/neural/neural_backend.h"
#include "support/scripted_audio_platform.h"

#include <algorithm>
#include <atomic>
#include <memory>
#include <QElapsedTimer>
#include <QTimer>
#include <utility>
#include <vector>

namespace velun::test {

/// A recognizer that says how much of its audio is not decoded.
class ObservedBackend final : public RecognizerBackend {
 public:
  ObservedBackend(std::unique_ptr<RecognizerBackend> recognizer,
                  std::shared_ptr<std::atomic<double>> undecoded)
      : recognizer_(std::move(recognizer)), undecoded_(std::move(undecoded)) {}

  void load() override { recognizer_->load(); }
  void acceptAudio(std::span<const float> samples) override {
    recognizer_->acceptAudio(samples);
    *undecoded_ = recognizer_->undecodedSeconds();
  }
  std::vector<TranscriptionResult> poll() override {
    std::vector<TranscriptionResult> results = recognizer_->poll();
    *undecoded_ = recognizer_->undecodedSeconds();
    return results;
  }
  bool expectsResults() const override { return recognizer_->expectsResults(); }
  double undecodedSeconds() const override { return recognizer_->undecodedSeconds(); }
  void awaitDecoding(std::chrono::milliseconds atMost) override {
    recognizer_->awaitDecoding(atMost);
  }
  void skip() override { recognizer_->skip(); }
  QString adviceIfTooSlow() const override { return recognizer_->adviceIfTooSlow(); }
  void finalize() override { recognizer_->finalize(); }
  void cancel() override { recognizer_->cancel(); }

 private:
  std::unique_ptr<RecognizerBackend> recognizer_;
  std::shared_ptr<std::atomic<double>> undecoded_;
};

/// The real helper program, which takes `slowness` seconds for a second of audio.
class ThrottledProvider final : public RecognizerProvider {
 public:
  ThrottledProvider(RecognizerSettings settings, double slowness) : settings_(std::move(settings)) {
    qputenv("VELUN_THROTTLED_PROGRAM", VELUN_RECOGNIZER);
    qputenv("VELUN_THROTTLED_SECONDS", QByteArray::number(slowness));
  }

  QStringList supportedLocales() const override { return {"en_US"}; }
  std::vector<RecognizerCandidate> candidates(const QString&) const override {
    RecognizerCandidate candidate;
    candidate.id = "throttled";
    candidate.isInstalled = true;
    return {candidate};
  }
  Factory makeFactory(const QString&, const QString&) const override {
    return [settings = settings_, undecoded = undecoded] {
      auto recognizer = std::make_unique<NeuralBackend>(VELUN_THROTTLED_HELPER, settings);
      return std::make_unique<ObservedBackend>(std::move(recognizer), undecoded);
    };
  }

  std::shared_ptr<std::atomic<double>> undecoded = std::make_shared<std::atomic<double>>(0);

 private:
  RecognizerSettings settings_;
};

/// `LocalSpeechPlatform`, and the input of its last run.
class ObservedSpeechPlatform final : public SpeechPlatform {
 public:
  ObservedSpeechPlatform(std::shared_ptr<RecognizerProvider> provider, Clock& clock)
      : platform_({std::move(provider)}, clock) {}

  QCoro::Task<QStringList> supportedLocales() override { return platform_.supportedLocales(); }
  std::optional<SpeechSupport> support(const QString& localeID) override {
    return platform_.support(localeID);
  }
  std::vector<RecognizerCandidate> candidates(const QString& locale) const override {
    return platform_.candidates(locale);
  }
  std::shared_ptr<SpeechModelOffer> offer(const QString& locale, const QString& id) override {
    return platform_.offer(locale, id);
  }
  std::unique_ptr<SpeechRun> start(const QString& locale,
                                   std::shared_ptr<SpeechInput> itsInput) override {
    input = std::move(itsInput);
    return platform_.start(locale, input);
  }

  std::shared_ptr<SpeechInput> input;

 private:
  LocalSpeechPlatform platform_;
};

/// Captions of a sound that is played again and again in real time and recognized too slowly.
class ThrottledCaptions {
 public:
  /// A second of `sound` takes `slowness` seconds.
  ThrottledCaptions(const RecognizerSettings& settings, double slowness, std::vector<float> sound)
      : provider_(std::make_shared<ThrottledProvider>(settings, slowness)),
        speech_(provider_, clock_),
        sound_(std::move(sound)) {
    QObject::connect(&timer_, &QTimer::timeout, [this] { playDue(); });
  }

  /// The engine must have been started.
  void startPlaying() {
    elapsed_.start();
    timer_.start(20);
  }
  void stopPlaying() { timer_.stop(); }

  double playedSeconds() const { return static_cast<double>(played_) / kSpeechSampleRate; }
  /// The most seconds of played audio that were neither decoded nor skipped.
  double longestBacklog() const { return longestBacklog_; }

 private:
  void playDue() {
    const auto due = static_cast<std::size_t>(elapsed_.elapsed()) * (kSpeechSampleRate / 1000);
    std::vector<float> samples;
    for (; played_ < due; ++played_) samples.push_back(sound_[played_ % sound_.size()]);
    if (audio_.script->handler) audio_.script->handler(samples);
    // Audio that the recognizer takes meanwhile must not count twice.
    const double before = *provider_->undecoded;
    const double pending = speech_.input->pendingSeconds();
    const double undecoded = std::min(before, provider_->undecoded->load());
    longestBacklog_ = std::max(longestBacklog_, pending + undecoded);
  }

  SystemClock clock_;
  std::shared_ptr<ThrottledProvider> provider_;
  ObservedSpeechPlatform speech_;
  ScriptedAudioPlatform audio_;
  std::vector<float> sound_;
  std::size_t played_ = 0;
  double longestBacklog_ = 0;
  QElapsedTimer elapsed_;
  QTimer timer_;

 public:
  SpeechRecognitionEngine engine{speech_, audio_, clock_};
};

}  // namespace velun::test
