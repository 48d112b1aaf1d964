// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/clock.h"
#include "platform/speech/lag_watch.h"
#include "platform/speech/speech_input.h"

#include <optional>

namespace velun {

/// Watches how far decoding is behind the incoming audio, and skips ahead when it is too far
/// behind. Decode thread.
class AudioBacklog {
 public:
  /// Seconds. Decoding is never further behind the audio, except just after loading.
  static constexpr double kMaxSeconds = 5.0;
  /// Seconds that a recognizer should have accepted and not decoded; the rest waits where it can be
  /// skipped.
  static constexpr double kMaxUndecodedSeconds = 0.5;

  struct Update {
    std::optional<bool> isBehind;  ///< the new state, if it changed
    double skippedSeconds = 0;     ///< audio that was skipped now
    bool isTooSlow = false;        ///< the machine cannot keep up; only once
  };

  /// Both must outlive the object.
  AudioBacklog(SpeechInput& input, const Clock& clock);

  /// A recognizer was loaded. The audio that waits now does not count as a backlog, as long as
  /// it becomes shorter.
  void recognizerLoaded();

  /// Skips ahead if the audio that waits and the `undecodedSeconds` of the recognizer are too long.
  Update update(double undecodedSeconds);

 private:
  double toleratedSeconds() const;
  double skipAhead();
  bool isTooSlow();

  SpeechInput& input_;
  const Clock& clock_;
  LagWatch lag_;
  /// When the recognizer was loaded, and the seconds of audio that waited then.
  double loadedAt_ = 0;
  double pendingAtLoad_ = 0;
  std::optional<double> lastSkip_;  ///< its time
  bool hasReportedTooSlow_ = false;
};

}  // namespace velun
