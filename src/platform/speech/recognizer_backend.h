// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/transcription_result.h"

#include <span>
#include <vector>

namespace velun {

/// One recognizer at work. Made, used and destroyed on one decode worker; takes 16 kHz mono float
/// samples in -1…1. Every operation but `cancel` may throw `Failure`, which ends the run; what was
/// found before is still there for `poll`.
class RecognizerBackend {
 public:
  virtual ~RecognizerBackend() = default;

  /// The first operation: makes ready what takes so long that `cancel` must be able to end it.
  virtual void load() {}

  /// Takes audio and decodes it.
  virtual void acceptAudio(std::span<const float> samples) = 0;

  /// The results since the last call, in order. A draft that did not change is not repeated.
  virtual std::vector<TranscriptionResult> poll() = 0;

  /// Whether results may still come without more audio: a phrase is under way or being settled.
  /// `poll` is then called every now and then, and `finalize` when the audio has stopped.
  virtual bool expectsResults() const { return false; }

  /// Settles the phrase under way, feeding the recognizer the silence it needs; `poll` then gives
  /// its final result.
  virtual void finalize() = 0;

  /// Any thread: nothing is wanted any more, and an operation under way returns soon. Only
  /// destruction follows.
  virtual void cancel() = 0;
};

}  // namespace velun
