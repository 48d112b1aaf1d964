// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "audio/caption_targets.h"
#include "audio/speech_recognition_event.h"

#include <optional>
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
  /// Starts one run with the sound of `targets`. Throws `StartFailure` (or `Cancelled` once `stop`
  /// was requested) after cleaning up. A model that is missing is downloaded first.
  virtual QCoro::Task<> start(QString localeID, CaptionTargets targets,
                              std::stop_token stop = {}) = 0;

  /// Ends the run; its last final results are delivered before this returns. Never fails.
  virtual QCoro::Task<> stop() = 0;

  /// Whether a start is downloading a model, which can take minutes. Requesting its stop ends it
  /// without delay.
  virtual bool isDownloading() const = 0;

  /// The input whose device the run waits for, because it is not connected.
  virtual std::optional<AudioInput> missingInput() const = 0;

  /// The level meter's band levels in dB, or empty while no audio arrives. At any time.
  virtual std::vector<float> meterBands() const = 0;

 Q_SIGNALS:
  /// Emitted once per event, in order. The events between a `start` and the end of its `stop`
  /// belong to that run; the engine discards later ones.
  void eventOccurred(const velun::SpeechRecognitionEvent& event);
  void isDownloadingChanged();
  void missingInputChanged();
  /// This machine cannot keep up with the audio; at most once in a run.
  void tooSlow();
};

}  // namespace velun
