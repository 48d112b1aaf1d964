// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/failure.h"
#include "platform/speech/recognizer_provider.h"

#include <atomic>
#include <memory>
#include <QStringList>
#include <semaphore>
#include <thread>

namespace velun::test {

/// How scripted back ends behave, and what they did. Shared with the decode thread.
struct BackendScript {
  std::atomic<bool> failsToLoad = false;
  std::atomic<bool> failsToDecode = false;
  /// Fails after adding a result.
  std::atomic<bool> failsAfterDecoding = false;
  /// Loading waits for `mayTake` or `cancel`.
  std::atomic<bool> isSlowToLoad = false;
  /// Accepting audio waits for `mayTake` or `cancel`.
  std::atomic<bool> isSlow = false;
  std::atomic<bool> isWaiting = false;
  std::counting_semaphore<> mayTake{0};
  std::atomic<bool> isInPhrase = false;
  std::atomic<double> undecodedSeconds = 0;
  std::atomic<int> awaitedDecoding = 0;
  std::atomic<int> alive = 0;
  std::atomic<int> finalizeCount = 0;
  std::atomic<int> samplesTaken = 0;
  /// The number of samples after which a phrase ends by itself; 0: never.
  std::atomic<int> phraseLength = 0;
  std::atomic<bool> wasOnMainThread = false;
  /// Set before the start.
  std::optional<QString> notice;
  /// The notice after the first audio. Set before the start.
  std::optional<QString> laterNotice;
};

/// A back end whose drafts and finals contain the number of buffers in the phrase.
class ScriptedBackend final : public RecognizerBackend {
 public:
  ScriptedBackend(std::shared_ptr<BackendScript> script, std::thread::id mainThread)
      : script_(std::move(script)) {
    if (std::this_thread::get_id() == mainThread) script_->wasOnMainThread = true;
    ++script_->alive;
  }
  ~ScriptedBackend() override { --script_->alive; }

  void load() override {
    if (script_->isSlowToLoad) wait();
    if (script_->failsToLoad) throw Failure("Cannot load");
  }
  std::optional<QString> notice() const override { return script_->notice; }
  void acceptAudio(std::span<const float> samples) override {
    if (script_->isSlow) wait();
    if (script_->failsToDecode) throw Failure("Cannot decode");
    if (script_->laterNotice) script_->notice = script_->laterNotice;
    script_->samplesTaken += static_cast<int>(samples.size());
    script_->isInPhrase = true;
    results_.push_back({QString("draft %1").arg(++pieces_), false});
    if (script_->failsAfterDecoding) throw Failure("Cannot decode");
    const int length = script_->phraseLength;
    if (length > 0 && script_->samplesTaken >= length) endPhrase();
  }
  std::vector<TranscriptionResult> poll() override { return std::exchange(results_, {}); }
  bool expectsResults() const override { return script_->isInPhrase; }
  double undecodedSeconds() const override { return script_->undecodedSeconds; }
  void awaitDecoding(std::chrono::milliseconds) override { ++script_->awaitedDecoding; }
  void finalize() override {
    ++script_->finalizeCount;
    if (pieces_ > 0) endPhrase();
  }
  void cancel() override {
    script_->isSlow = false;
    script_->mayTake.release();
  }

 private:
  void wait() {
    script_->isWaiting = true;
    script_->mayTake.acquire();
    script_->isWaiting = false;
  }
  void endPhrase() {
    results_.push_back({QString("final %1").arg(pieces_), true});
    pieces_ = 0;
    script_->isInPhrase = false;
  }

  std::shared_ptr<BackendScript> script_;
  std::vector<TranscriptionResult> results_;
  int pieces_ = 0;
};

/// A provider with one recognizer per locale.
class ScriptedRecognizerProvider final : public RecognizerProvider {
 public:
  explicit ScriptedRecognizerProvider(QStringList supported, QStringList installed = {})
      : supportedList(std::move(supported)), installedList(std::move(installed)) {}

  QStringList supportedLocales() const override { return supportedList; }
  std::vector<RecognizerCandidate> candidates(const QString& locale) const override {
    if (!supportedList.contains(locale)) return {};
    RecognizerCandidate only;
    only.id = id;
    only.title = title;
    only.isInstalled = installedList.contains(locale);
    only.modelBytes = modelBytes;
    only.needsAgreement = needsAgreement;
    return {only};
  }
  bool isBeingCompleted(const QString&, const QString&) const override { return isIncomplete; }
  Factory makeFactory(const QString&, const QString&) const override {
    return [backends = script, mainThread = std::this_thread::get_id()] {
      return std::make_unique<ScriptedBackend>(backends, mainThread);
    };
  }
  std::shared_ptr<SpeechModelOffer> offer(const QString& locale, const QString&) override {
    asked << locale;
    return model;
  }

  QString id = "scripted";
  QString title;
  std::int64_t modelBytes = 0;
  bool needsAgreement = false;
  QStringList supportedList;
  QStringList installedList;
  bool isIncomplete = false;
  std::shared_ptr<SpeechModelOffer> model;
  /// The locales that offers were asked for.
  QStringList asked;
  std::shared_ptr<BackendScript> script = std::make_shared<BackendScript>();
};

}  // namespace velun::test
