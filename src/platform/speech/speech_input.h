// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <vector>

namespace velun {

/// Samples per second of the audio of every recognizer.
inline constexpr int kSpeechSampleRate = 16'000;

/// Mono samples at `kSpeechSampleRate`, between −1 and 1.
struct SpeechSamples {
  std::vector<float> samples;
  /// Audio before these samples was skipped.
  bool followsGap = false;
  /// When the last of them was heard, in seconds of the source's clock (see `SpokenSpan`).
  double heardUntil = 0;

  double seconds() const { return static_cast<double>(samples.size()) / kSpeechSampleRate; }
};

/// The queue of audio from the feeder (capture thread) to the recognizer (decode thread).
class SpeechInput {
 public:
  enum class Kind {
    live,
    /// Of a recording whose drafts nobody wants: its words may come late, but soon all of them.
    recorded,
  };

  explicit SpeechInput(Kind kind = Kind::live) : kind_(kind) {}

  bool isRecorded() const { return kind_ == Kind::recorded; }

  /// Beyond this, in seconds, the oldest audio is dropped: a recognizer that takes nothing for so
  /// long hangs.
  static constexpr double kMaxPendingSeconds = 120;

  /// Appends; dropped after `finish`. Capture thread.
  void yield(SpeechSamples input);

  /// Waits until no more than `seconds` of audio wait to be taken, for a source that need not go on
  /// at the speed of life. False once the stream has ended. Any thread.
  bool awaitRoom(double seconds);

  /// Ends the stream: what was yielded before is still delivered. Any thread.
  void finish();

  /// Waits for the next input. Returns nullopt once the stream has ended and is empty, or when
  /// woken by `interrupt`. Decode thread.
  std::optional<SpeechSamples> next();

  /// The same, waiting no longer than `atMost`. Decode thread.
  std::optional<SpeechSamples> next(std::chrono::milliseconds atMost);

  /// The next input if there is one now. Decode thread.
  std::optional<SpeechSamples> tryNext();

  /// Takes everything that waits, in order. Decode thread.
  std::deque<SpeechSamples> takeAll();

  /// Puts input back in front of what waits. Decode thread.
  void putBack(std::deque<SpeechSamples> inputs);

  /// Makes a waiting `next` return nullopt once, so that the worker can check for a command. Any
  /// thread.
  void interrupt();

  /// Whether the stream has ended. Any thread.
  bool isFinished() const;

  /// Whether the stream has ended and everything was taken. Any thread.
  bool isDrained() const;

  /// Audio that waits to be taken, in seconds. Any thread.
  double pendingSeconds() const;

 private:
  bool isWorthWaking() const { return !inputs_.empty() || isFinished_ || isInterrupted_; }
  std::optional<SpeechSamples> takeFirst();

  const Kind kind_;
  mutable std::mutex mutex_;
  std::condition_variable changed_;
  std::condition_variable taken_;
  std::deque<SpeechSamples> inputs_;
  double pendingSeconds_ = 0;
  bool isFinished_ = false;
  bool isInterrupted_ = false;
};

}  // namespace velun
