// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "audio/speech_recognition_event.h"
#include "platform/audio/audio_target.h"

#include <QCoroTask>
#include <QObject>
#include <QString>
#include <stop_token>
#include <vector>

namespace velun {

/// The interface of the speech engine, for the caption model. Main thread.
class SpeechRecognizing : public QObject {
  Q_OBJECT

 public:
  /// Starts one run with the sound of `target`. Throws `StartFailure` (or `Cancelled` once `stop`
  /// was requested) after cleaning up. A model that is missing is downloaded first.
  virtual QCoro::Task<> start(QString localeID, AudioTarget target, std::stop_token stop = {}) = 0;

  /// Ends the run; its last final results are delivered before this returns. Never fails.
  virtual QCoro::Task<> stop() = 0;

  /// Whether a start is downloading a model, which can take minutes. Requesting its stop ends it
  /// without delay.
  virtual bool isDownloading() const = 0;

  /// Whether the run waits for its device, which is not connected.
  virtual bool isDeviceMissing() const = 0;

  /// The level meter's band levels in dB, or empty while no audio arrives. At any time.
  virtual std::vector<float> meterBands() const = 0;

 Q_SIGNALS:
  /// Emitted once per event, in order. The events between a `start` and the end of its `stop`
  /// belong to that run; the engine discards later ones.
  void eventOccurred(const velun::SpeechRecognitionEvent& event);
  void isDownloadingChanged();
  void isDeviceMissingChanged();
  /// This machine cannot keep up with the audio; at most once in a run.
  void tooSlow();
};

}  // namespace velun
