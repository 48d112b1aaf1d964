// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/failure.h"
#include "platform/foundation/one_shot.h"
#include "platform/speech/local_transcriber.h"
#include "platform/speech/locale_equivalence.h"
#include "platform/speech/speech_platform.h"

#include <functional>
#include <memory>
#include <QStringList>

namespace velun::test {

/// What a scripted speech platform answers, what it was asked, and the run under way.
struct SpeechScript {
  QStringList locales = {"en_US", "ko_KR"};
  std::optional<AudioFormat> format = AudioFormat{AudioFormat::Sample::float32, 16000, 1, true};
  std::shared_ptr<AssetInstallationRequest> request;
  /// Thrown by the analyzer's start.
  std::optional<QString> startFailure;
  /// Thrown by both ways of settling.
  std::optional<QString> settleFailure;
  /// Called in the middle of the operation of that name.
  std::function<void()> onStart;
  std::function<void()> onFinalize;
  std::function<void()> onFinish;

  QStringList calls;
  std::shared_ptr<SpeechTranscriber> transcriber;
  std::shared_ptr<AnalyzerInputStream> input;

  void result(const QString& text, bool isFinal) const {
    if (transcriber->onResult) transcriber->onResult({text, isFinal});
  }
  void end(const std::optional<QString>& error = {}) const {
    if (transcriber->onEnd) transcriber->onEnd(error);
  }
};

class ScriptedSpeechAnalyzer final : public SpeechAnalyzer {
 public:
  explicit ScriptedSpeechAnalyzer(std::shared_ptr<SpeechScript> script)
      : script_(std::move(script)) {}

  QCoro::Task<> start(std::shared_ptr<AnalyzerInputStream> input) override {
    script_->calls << "start";
    script_->input = std::move(input);
    if (script_->onStart) script_->onStart();
    if (script_->startFailure) throw Failure(*script_->startFailure);
    co_return;
  }
  QCoro::Task<> finalizeThroughEndOfInputSoFar() override {
    script_->calls << "finalize";
    if (script_->onFinalize) script_->onFinalize();
    if (script_->settleFailure) throw Failure(*script_->settleFailure);
    co_return;
  }
  QCoro::Task<> finalizeAndFinishThroughEndOfInput() override {
    script_->calls << "finish";
    if (script_->onFinish) script_->onFinish();
    script_->end();
    if (script_->settleFailure) throw Failure(*script_->settleFailure);
    co_return;
  }
  QCoro::Task<> cancelAndFinishNow() override {
    script_->calls << "cancel";
    script_->end();
    co_return;
  }

 private:
  std::shared_ptr<SpeechScript> script_;
};

class ScriptedSpeechPlatform final : public SpeechPlatform {
 public:
  QCoro::Task<QStringList> supportedLocales() override { co_return script->locales; }
  QCoro::Task<std::optional<QString>> supportedLocale(QString equivalentTo) override {
    script->calls << "supportedLocale " + equivalentTo;
    co_return equivalentLocale(equivalentTo, script->locales);
  }
  std::shared_ptr<SpeechTranscriber> makeTranscriber(const QString& locale) override {
    script->calls << "transcriber " + locale;
    script->transcriber = std::make_shared<LocalTranscriber>(locale);
    return script->transcriber;
  }
  QCoro::Task<std::shared_ptr<AssetInstallationRequest>> assetInstallationRequest(
      std::shared_ptr<SpeechTranscriber>) override {
    script->calls << "request";
    co_return script->request;
  }
  QCoro::Task<std::optional<AudioFormat>> bestAvailableAudioFormat(
      std::shared_ptr<SpeechTranscriber>) override {
    script->calls << "format";
    co_return script->format;
  }
  std::unique_ptr<SpeechAnalyzer> makeAnalyzer(std::shared_ptr<SpeechTranscriber>) override {
    script->calls << "analyzer";
    return std::make_unique<ScriptedSpeechAnalyzer>(script);
  }

  std::shared_ptr<SpeechScript> script = std::make_shared<SpeechScript>();
};

/// A download that waits until it is told how it ends.
class ScriptedInstallation final : public AssetInstallationRequest {
 public:
  QCoro::Task<> downloadAndInstall(std::stop_token stop) override {
    stopToken = stop;
    const OneShot<bool> waiting = outcome;
    co_await waiting;
  }

  OneShot<bool> outcome;
  std::stop_token stopToken;
};

}  // namespace velun::test
