// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "audio/speech_recognition_event.h"

#include <functional>
#include <QCoroTask>
#include <QString>
#include <stop_token>
#include <vector>

namespace velun {

/// The speech engine as the caption model sees it. Main thread.
class SpeechRecognizing {
 public:
  virtual ~SpeechRecognizing() = default;

  /// Hears every event, one at a time, in order. Set once, before the first `start`; unset, events
  /// are dropped. The events between a `start` and the end of its `stop` belong to that run; later
  /// ones are dropped by the engine.
  std::function<void(const SpeechRecognitionEvent&)> onEvent;

  /// Starts one run. Throws `Failure` (or `Cancelled` once `stop` was requested) after cleaning
  /// up.
  virtual QCoro::Task<> start(QString localeID, bool useMic, std::stop_token stop = {}) = 0;

  /// Ends the run; its last final results are delivered before this returns. Never fails.
  virtual QCoro::Task<> stop() = 0;

  /// The level meter's band levels in dB, or empty while no audio arrives. At any time.
  virtual std::vector<float> meterBands() const = 0;
};

}  // namespace velun
