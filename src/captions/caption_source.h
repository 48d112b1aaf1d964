// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "audio/speech_recognition_event.h"

#include <optional>
#include <QObject>

namespace velun {

/// What a run of `velun captions` listens to, and the recognizer at work on it. Main thread.
class CaptionSource : public QObject {
  Q_OBJECT

 public:
  /// Starts. Everything is told by signals from then on.
  virtual void start() = 0;

  /// Ends soon: the last words are still recognized, then `ended` follows.
  virtual void stop() = 0;

 Q_SIGNALS:
  void eventOccurred(const velun::SpeechRecognitionEvent& event);
  /// How far the recording is captioned, in seconds, and its length if it tells.
  void advanced(double position, std::optional<double> duration);
  /// The last signal. `error` is a localized text that says what failed.
  void ended(const std::optional<QString>& error);
};

}  // namespace velun
