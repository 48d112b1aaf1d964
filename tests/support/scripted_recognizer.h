// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "audio/speech_recognizing.h"
#include "platform/foundation/failure.h"
#include "platform/foundation/one_shot.h"

#include <functional>
#include <memory>
#include <optional>
#include <QPointer>
#include <QStringList>
#include <utility>

namespace velun::test {

/// A recognizer that follows a script. The test shares the script, so that it can inspect it and
/// release held operations after the recognizer is gone.
class ScriptedRecognizer final : public SpeechRecognizing {
 public:
  struct Script {
    /// The calls and their ends, in order: "start en_US computer", "started",
    /// "start failed", "stop", "stopped".
    QStringList calls;
    /// Counts operations that began while another one was running, and starts of a started engine.
    /// Neither is allowed.
    int overlaps = 0;
    /// The next operations run until they are released.
    bool holdsStarts = false;
    bool holdsStops = false;
    /// Starts are downloading a model while they run.
    bool downloads = false;
    /// A running start ignores the request to stop.
    bool ignoresStopRequests = false;
    /// The next start fails with this text, once.
    std::optional<QString> startFailure;
    /// Results that arrive while the next stop is finishing, once.
    std::vector<SpeechRecognitionEvent> lastWords;
    /// Called with every event just before it is emitted.
    std::function<void(const SpeechRecognitionEvent&)> onEmit;
    std::vector<float> bands;
    /// Whether audio is being recognized.
    bool isStarted = false;
    bool isStopRequested = false;
    bool isDownloading = false;
    std::optional<AudioInput> missingInput;

    /// Ends the held operation; `fail` ends a start with a failure.
    void release() const { gate.complete(true); }
    void fail(const QString& description) const {
      gate.fail(std::make_exception_ptr(Failure(description)));
    }
    bool isBusy() const { return isBusy_; }

    OneShot<bool> gate;

    void begin(const QString& call) {
      calls.append(call);
      if (std::exchange(isBusy_, true)) ++overlaps;
    }
    void end(const QString& call) {
      calls.append(call);
      isBusy_ = false;
    }

   private:
    bool isBusy_ = false;
  };

  explicit ScriptedRecognizer(std::shared_ptr<Script> script) : script_(std::move(script)) {}

  /// Delivers an event as the engine would.
  void emitEvent(const SpeechRecognitionEvent& happened) {
    if (script_->onEmit) script_->onEmit(happened);
    Q_EMIT eventOccurred(happened);
  }

  QCoro::Task<> start(QString localeID, CaptionTargets targets, std::stop_token stop) override {
    const QPointer<ScriptedRecognizer> self(this);
    const std::shared_ptr<Script> script = script_;
    if (script->isStarted) ++script->overlaps;
    QString call = "start " + localeID;
    for (const AudioTarget& target : targets.all()) {
      const bool isMicrophone = target.kind == AudioTarget::Kind::input;
      call += isMicrophone ? " microphone" : " computer";
      if (!target.id.isEmpty()) call += ' ' + target.id;
    }
    script->begin(call);
    std::exception_ptr error;
    try {
      const OneShot<bool> gate;
      script->gate = gate;
      const auto cancel = [gate, script] {
        script->isStopRequested = true;
        if (!script->ignoresStopRequests) gate.fail(std::make_exception_ptr(Cancelled()));
      };
      const std::stop_callback cancelled(stop, cancel);
      setDownloading(script->downloads);
      if (script->holdsStarts) co_await gate;
      if (!self) throw Cancelled();
      const std::optional<QString> failure = std::exchange(script->startFailure, std::nullopt);
      if (failure) throw Failure(*failure);
    } catch (...) {
      error = std::current_exception();
    }
    if (self) setDownloading(false);
    script->isStarted = !error;
    script->end(error ? "start failed" : "started");
    if (error) std::rethrow_exception(error);
  }

  QCoro::Task<> stop() override {
    const QPointer<ScriptedRecognizer> self(this);
    const std::shared_ptr<Script> script = script_;
    script->begin("stop");
    const OneShot<bool> gate;
    script->gate = gate;
    if (script->holdsStops) co_await gate;
    const std::vector<SpeechRecognitionEvent> lastWords = std::exchange(script->lastWords, {});
    for (const SpeechRecognitionEvent& event : lastWords) {
      if (self) emitEvent(event);
    }
    script->isStarted = false;
    script->end("stopped");
  }

  bool isDownloading() const override { return script_->isDownloading; }
  std::optional<AudioInput> missingInput() const override { return script_->missingInput; }

  /// The device of the run goes away or comes back.
  void setMissing(std::optional<AudioInput> input) {
    script_->missingInput = input;
    Q_EMIT missingInputChanged();
  }

  std::vector<float> meterBands() const override { return script_->bands; }

 private:
  void setDownloading(bool isDownloading) {
    if (std::exchange(script_->isDownloading, isDownloading) != isDownloading) {
      Q_EMIT isDownloadingChanged();
    }
  }

  std::shared_ptr<Script> script_;
};

}  // namespace velun::test
