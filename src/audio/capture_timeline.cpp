// SPDX-License-Identifier: GPL-3.0-or-later
#include "audio/capture_timeline.h"

#include "platform/audio/audio_source.h"

#include <algorithm>
#include <cmath>

namespace velun {

namespace {

constexpr std::int64_t kRate = AudioSource::kSampleRate;
/// A call that is later than this comes after a gap.
constexpr std::int64_t kGap = kRate / 4;
/// What the positions may be wrong by. An echo canceller has to learn anew after each shift.
constexpr std::int64_t kTolerance = kRate / 50;
/// The same in the first seconds: the first call was late if others come too early for it.
constexpr std::int64_t kFirstTolerance = kRate / 200;
/// In seconds: at least one of the calls in this time is on time.
constexpr double kWindow = 2;

}  // namespace

std::int64_t CaptureTimeline::place(double time, std::size_t count) {
  const auto length = static_cast<std::int64_t>(count);
  const std::int64_t begin = std::llround(time * static_cast<double>(kRate)) - length;
  if (!settling_) {
    next_ = begin;
    settling_ = time + kWindow;
  }
  const std::int64_t lateness = begin - next_;
  calls_.push_back({time, lateness});
  if (lateness > kGap || lateness < (time < *settling_ ? -kFirstTolerance : -kTolerance)) {
    shift(lateness);
    settling_ = time + kWindow;
  } else if (time - calls_.front().time >= kWindow) {
    const std::int64_t least = std::ranges::min(calls_, {}, &Call::lateness).lateness;
    if (least > kTolerance) shift(least);
    while (!calls_.empty() && time - calls_.front().time >= kWindow) calls_.pop_front();
  }
  const std::int64_t position = next_;
  next_ += length;
  return position;
}

void CaptureTimeline::shift(std::int64_t samples) {
  next_ += samples;
  calls_.clear();
}

}  // namespace velun
