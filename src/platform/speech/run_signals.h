// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/speech_platform.h"

#include <atomic>
#include <QMetaObject>
#include <type_traits>

namespace velun {

/// Emits the signals of a run on the main thread, in order, unless the run is cancelled. Any
/// thread.
class RunSignals {
 public:
  /// Both must outlive the object.
  RunSignals(SpeechRun& run, const std::atomic<bool>& isCancelled)
      : run_(run), isCancelled_(isCancelled) {}

  template <class Run, class... Arguments>
  void post(void (Run::*signal)(Arguments...), std::decay_t<Arguments>... values) const {
    QMetaObject::invokeMethod(
        &run_,
        [this, signal, ... values = std::move(values)] {
          if (!isCancelled_) Q_EMIT(static_cast<Run&>(run_).*signal)(values...);
        },
        Qt::QueuedConnection);
  }

 private:
  SpeechRun& run_;
  const std::atomic<bool>& isCancelled_;
};

}  // namespace velun
