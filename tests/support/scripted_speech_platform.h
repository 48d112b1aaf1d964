// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/failure.h"
#include "platform/foundation/one_shot.h"
#include "platform/speech/locale_equivalence.h"
#include "platform/speech/speech_platform.h"

#include <functional>
#include <memory>
#include <QPointer>
#include <QStringList>
#include <utility>

namespace velun::test {

/// How a scripted speech platform behaves, the calls to it, and its run.
struct SpeechScript {
  QStringList locales = {"en_US", "ko_KR"};
  std::shared_ptr<SpeechModelOffer> offer;
  bool needsAgreement = false;
  std::vector<RecognizerCandidate> candidates;
  /// The failure of the next starts.
  std::optional<QString> startFailure;
  /// Called during the operation of that name.
  std::function<void()> onSettle;
  std::function<void()> onFinish;
  /// The recognizer makes no progress: `finish` waits for `cancel`.
  bool hangs = false;
  OneShot<bool> cancelled;

  QStringList calls;
  /// The last run, while it exists.
  QPointer<SpeechRun> run;
  std::shared_ptr<SpeechInput> input;

  void result(const QString& text, bool isFinal) const { Q_EMIT run->resultReady({text, isFinal}); }
  void end(const std::optional<QString>& error = {}) const { Q_EMIT run->ended(error); }
};

class ScriptedSpeechRun final : public SpeechRun {
 public:
  explicit ScriptedSpeechRun(std::shared_ptr<SpeechScript> script) : script_(std::move(script)) {}

  QCoro::Task<> settle() override {
    script_->calls << "settle";
    if (script_->onSettle) script_->onSettle();
    co_return;
  }
  QCoro::Task<> finish() override {
    script_->calls << "finish";
    if (script_->onFinish) script_->onFinish();
    if (script_->hangs) {
      const OneShot<bool> cancelled = script_->cancelled;
      co_await cancelled;
    } else {
      script_->end();
    }
  }
  QCoro::Task<> cancel() override {
    script_->calls << "cancel";
    script_->cancelled.complete(true);
    script_->end();
    co_return;
  }

 private:
  std::shared_ptr<SpeechScript> script_;
};

class ScriptedSpeechPlatform final : public SpeechPlatform {
 public:
  QCoro::Task<QStringList> supportedLocales() override {
    const QStringList locales = script->locales;
    co_return locales;
  }
  std::optional<SpeechSupport> support(const QString& localeID) override {
    script->calls << "support " + localeID;
    const std::optional<QString> locale = equivalentLocale(localeID, script->locales);
    if (!locale) return std::nullopt;
    return SpeechSupport{*locale, script->offer, script->needsAgreement};
  }
  std::vector<RecognizerCandidate> candidates(const QString&) const override {
    return script->candidates;
  }
  std::shared_ptr<SpeechModelOffer> offer(const QString& locale, const QString& id) override {
    script->calls << "offer " + locale + ' ' + id;
    return script->offer;
  }
  std::unique_ptr<SpeechRun> start(const QString& locale,
                                   std::shared_ptr<SpeechInput> input) override {
    script->calls << "start " + locale;
    if (script->startFailure) throw Failure(*script->startFailure);
    script->input = std::move(input);
    auto run = std::make_unique<ScriptedSpeechRun>(script);
    script->run = run.get();
    return run;
  }

  std::shared_ptr<SpeechScript> script = std::make_shared<SpeechScript>();
};

/// A download that the test completes.
class ScriptedModelOffer final : public SpeechModelOffer {
 public:
  qint64 downloadBytes() const override { return 0; }
  QCoro::Task<> install(std::stop_token stop) override {
    stopToken = stop;
    const OneShot<bool> waiting = outcome;
    co_await waiting;
  }

  OneShot<bool> outcome;
  std::stop_token stopToken;
};

}  // namespace velun::test
