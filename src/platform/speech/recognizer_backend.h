// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/transcription_result.h"

#include <chrono>
#include <optional>
#include <QString>
#include <span>
#include <vector>

namespace velun {

/// One recognizer. Created, used and destroyed on one decode thread; takes 16 kHz mono float
/// samples in -1…1. Every operation but `cancel` may throw `Failure`, which ends the run; earlier
/// results can still be polled then.
class RecognizerBackend {
 public:
  virtual ~RecognizerBackend() = default;

  /// The audio is that of a recording: drafts are not wanted, and final results may come later than
  /// those of live audio. Before `load`.
  virtual void expectRecording() {}

  /// The same recognizer failed in this run before: what it shares with other runs must not fail
  /// with it again. Before `load`.
  virtual void standAlone() {}

  /// Does the slow part of the initialization, which `cancel` must be able to end.
  virtual void load() {}

  /// What the user should know about the captions to come, localized. Known after `load`; may
  /// change after later calls.
  virtual std::optional<QString> notice() const { return std::nullopt; }

  /// Decodes the samples.
  virtual void acceptAudio(std::span<const float> samples) = 0;

  /// The results since the last call, in order. An unchanged draft is not repeated.
  virtual std::vector<TranscriptionResult> poll() = 0;

  /// Whether results may still come without more audio: a phrase is under way or being finalized.
  /// While true, `poll` is called every few milliseconds, and silence is fed when audio stops
  /// arriving.
  virtual bool expectsResults() const { return false; }

  /// Audio that was accepted and is not decoded yet, in seconds. Above
  /// `AudioBacklog::kMaxUndecodedSeconds` the caller keeps further audio back.
  virtual double undecodedSeconds() const { return 0; }

  /// Waits, no longer than `atMost`, until some of that audio is decoded.
  virtual void awaitDecoding(std::chrono::milliseconds /*atMost*/) {}

  /// The audio to come does not continue the audio until now: ends the phrase under way, whose
  /// final result may come later.
  virtual void skip() { finalize(); }

  /// What the user can do when this recognizer is too slow for the machine, localized.
  virtual QString adviceIfTooSlow() const;

  /// Finalizes the phrase under way, as if enough silence had followed; `poll` then returns its
  /// final result.
  virtual void finalize() = 0;

  /// Makes a running operation return soon. Only destruction follows. Any thread.
  virtual void cancel() = 0;
};

}  // namespace velun
