// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "audio/capture_timeline.h"
#include "platform/foundation/clock.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <span>
#include <vector>

namespace velun {

/// Takes what the computer plays out of the microphone's sound, by an adaptive filter that learns
/// the way from the loudspeakers to the microphone. Echoes of up to 0.3 s are taken out; the rest
/// is for `EchoRemoval`. Started and stopped on any thread; the samples come on two capture
/// threads, mono at 16 kHz.
class EchoCanceller {
 public:
  /// How much later the microphone's sound comes while the canceller runs.
  static constexpr double kDelaySeconds = 0.05;

  /// `clock` must outlive the canceller.
  explicit EchoCanceller(const Clock& clock);
  ~EchoCanceller();
  EchoCanceller(const EchoCanceller&) = delete;
  EchoCanceller& operator=(const EchoCanceller&) = delete;

  /// Forgets what it has learnt and begins.
  void start();
  /// The microphone's sound passes unchanged from now on, as before the first start.
  void stop();

  /// Takes the next samples that the computer plays.
  void addPlayed(std::span<const float> samples) noexcept;

  /// Takes the next samples of the microphone and returns those that are ready, without the echo.
  /// They are valid until the next call. One call at a time.
  std::span<const float> withoutEcho(std::span<const float> samples) noexcept;

 private:
  struct Filter;

  void keepPlayed(std::int64_t position, std::span<const float> samples);
  void cancelFrame();

  const Clock& clock_;
  std::mutex lock_;
  /// Null while it is stopped.
  std::unique_ptr<Filter> filter_;
  CaptureTimeline playedTimeline_;
  CaptureTimeline heardTimeline_;
  /// A ring: the sample of a position is at its remainder.
  std::vector<std::int16_t> played_;
  /// The position behind the last played sample.
  std::int64_t playedEnd_ = 0;
  /// The microphone's samples that wait for what was played until then.
  std::vector<std::int16_t> heard_;
  /// The position of the first one.
  std::int64_t heardBegin_ = 0;
  std::vector<float> output_;
};

}  // namespace velun
