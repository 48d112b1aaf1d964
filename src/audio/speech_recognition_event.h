// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/audio_input.h"
#include "platform/foundation/clock.h"
#include "platform/speech/voice_print.h"

#include <optional>
#include <QString>
#include <variant>

namespace velun {

/// The unfinished text of the phrase under way; empty clears it.
struct DraftEvent {
  QString text;
  AudioInput input = AudioInput::computer;
  bool operator==(const DraftEvent&) const = default;
};

/// A finished piece of recognized text, trimmed and never empty.
struct FinalEvent {
  QString text;
  /// Exactly the `localeID` that was given to `start`.
  QString sourceID;
  AudioInput input = AudioInput::computer;
  /// When the words were said; nullopt if the recognizer does not tell.
  struct Spoken {
    Instant start;
    Instant end;
    bool operator==(const Spoken&) const = default;
  };
  std::optional<Spoken> spoken = {};
  /// The voice that said it, if it is known.
  std::optional<VoicePrint> voice = {};
  bool operator==(const FinalEvent&) const = default;
};

/// The engine's status, localized; nullopt clears it.
struct StatusEvent {
  std::optional<QString> text;
  bool operator==(const StatusEvent&) const = default;
};

/// What has failed.
enum class FailureStage {
  /// The capture of sound.
  sound,
  /// The recognizer, or there is none for the language.
  recognition,
  /// The download of a speech model.
  download,
};

/// A localized error. The consumer must then stop the engine.
struct FailureEvent {
  QString message;
  FailureStage stage = FailureStage::recognition;
  bool operator==(const FailureEvent&) const = default;
};

/// The events of the recognition engine, delivered on the main thread in order.
using SpeechRecognitionEvent = std::variant<DraftEvent, FinalEvent, StatusEvent, FailureEvent>;

}  // namespace velun
