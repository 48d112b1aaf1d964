// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audio/pcm_buffer.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>

namespace velun {

/// The audio format of every recognizer: 16 kHz mono float samples in -1…1.
inline constexpr AudioFormat kSpeechFormat = {AudioFormat::Sample::float32, 16000, 1, true};

/// A buffer of audio in `kSpeechFormat`.
struct AnalyzerInput {
  PcmBuffer buffer;

  double seconds() const {
    return static_cast<double>(buffer.frameLength()) / buffer.format().sampleRate;
  }
};

/// The unbounded stream from the feeder (capture thread) to the analyzer (decode worker).
class AnalyzerInputStream {
 public:
  /// Appends; dropped after `finish`. Capture thread.
  void yield(AnalyzerInput input);

  /// Ends the stream: what was yielded before is still delivered. Any thread.
  void finish();

  /// The next input, waiting for it; none once the stream has ended and is empty, or at once when
  /// woken by `interrupt`. Decode worker.
  std::optional<AnalyzerInput> next();

  /// The same, waiting no longer than `atMost`. Decode worker.
  std::optional<AnalyzerInput> next(std::chrono::milliseconds atMost);

  /// The next input if there is one now. Decode worker.
  std::optional<AnalyzerInput> tryNext();

  /// Makes a waiting `next` return none once, so that the worker can look at a command. Any thread.
  void interrupt();

  /// Whether the stream has ended and everything was taken. Any thread.
  bool isDrained() const;

  /// Audio that waits to be taken, in seconds. Any thread.
  double pendingSeconds() const;

 private:
  bool isWorthWaking() const { return !inputs_.empty() || isFinished_ || isInterrupted_; }
  std::optional<AnalyzerInput> takeFirst();

  mutable std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<AnalyzerInput> inputs_;
  double pendingSeconds_ = 0;
  bool isFinished_ = false;
  bool isInterrupted_ = false;
};

}  // namespace velun
