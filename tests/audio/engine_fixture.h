// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "audio/speech_recognition_engine.h"
#include "audio/start_failure.h"
#include "support/await.h"
#include "support/manual_clock.h"
#include "support/scripted_audio_platform.h"
#include "support/scripted_speech_platform.h"
#include "support/signals.h"

#include <QCoroTask>

namespace velun::test {

/// A short text for each event, for readable lists.
inline QString described(const SpeechRecognitionEvent& event) {
  if (const auto* draft = std::get_if<DraftEvent>(&event)) return "draft " + draft->text;
  if (const auto* status = std::get_if<StatusEvent>(&event)) {
    return "status " + status->text.value_or("-");
  }
  if (const auto* failure = std::get_if<FailureEvent>(&event)) return "failure " + failure->message;
  const auto& final = std::get<FinalEvent>(event);
  return QString("final %1 (%2, %3)")
      .arg(final.text, final.sourceID,
           final.input == AudioInput::microphone ? "microphone" : "computer");
}

/// An engine on scripted platforms, with the events it sent.
struct EngineFixture {
  EngineFixture() {
    QObject::connect(engine.get(), &SpeechRecognizing::eventOccurred,
                     [this](const SpeechRecognitionEvent& event) { events << described(event); });
  }

  /// The description of the exception of the start, "cancelled", or nothing.
  QString start(const QString& localeID = "en_US", const AudioTarget& target = {}) {
    try {
      await(engine->start(localeID, target, stopSource.get_token()));
    } catch (const Cancelled&) {
      return "cancelled";
    } catch (const StartFailure& failure) {
      failedStage = failure.stage();
      return failure.errorDescription();
    } catch (const Failure& failure) {
      return failure.errorDescription();
    }
    return {};
  }
  void stop() { await(engine->stop()); }
  void startWithAudio() {
    start();
    playBuffer();
    events.clear();
  }
  void playBuffer() { audio.script->handler(tone(440, 0.1F, 1600)); }

  ManualClock clock;
  ScriptedSpeechPlatform speech;
  ScriptedAudioPlatform audio;
  std::stop_source stopSource;
  QStringList events;
  /// What the last start that failed was doing.
  std::optional<FailureStage> failedStage;
  std::unique_ptr<SpeechRecognitionEngine> engine =
      std::make_unique<SpeechRecognitionEngine>(speech, audio, clock);
};

}  // namespace velun::test
