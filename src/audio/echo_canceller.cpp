// SPDX-License-Identifier: GPL-3.0-or-later
#include "audio/echo_canceller.h"

#include "platform/audio/audio_source.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <speex/speex_echo.h>

namespace velun {

namespace {

constexpr int kFrame = 160;
/// How long the filter is, in samples: the way through the devices and the air, and the
/// reverberation of a living room.
constexpr int kFilterLength = 4'800;
constexpr std::int64_t kPlayedLength = 2 * AudioSource::kSampleRate;
/// The microphone's samples wait this long for those that were played at the same time.
constexpr auto kWait =
    static_cast<std::size_t>(EchoCanceller::kDelaySeconds * AudioSource::kSampleRate);
/// What is played is taken as this much earlier: its positions may be wrong by some milliseconds,
/// and the filter cannot look into the future.
constexpr std::int64_t kLead = AudioSource::kSampleRate / 100;

std::int16_t toInteger(float sample) {
  return static_cast<std::int16_t>(std::lround(std::clamp(sample, -1.0F, 1.0F) * 32'767.0F));
}

std::size_t ringIndex(std::int64_t position) {
  const std::int64_t rest = position % kPlayedLength;
  return static_cast<std::size_t>(rest < 0 ? rest + kPlayedLength : rest);
}

}  // namespace

struct EchoCanceller::Filter {
  Filter() {
    int rate = AudioSource::kSampleRate;
    speex_echo_ctl(state, SPEEX_ECHO_SET_SAMPLING_RATE, &rate);
  }
  ~Filter() { speex_echo_state_destroy(state); }
  Filter(const Filter&) = delete;
  Filter& operator=(const Filter&) = delete;

  SpeexEchoState* state = speex_echo_state_init(kFrame, kFilterLength);
};

EchoCanceller::EchoCanceller(const Clock& clock) : clock_(clock) {}

EchoCanceller::~EchoCanceller() = default;

void EchoCanceller::start() {
  const std::lock_guard lock(lock_);
  filter_ = std::make_unique<Filter>();
  playedTimeline_ = {};
  heardTimeline_ = {};
  played_.assign(static_cast<std::size_t>(kPlayedLength), 0);
  playedEnd_ = 0;
  heard_.clear();
}

void EchoCanceller::stop() {
  const std::lock_guard lock(lock_);
  filter_.reset();
  played_ = {};
}

void EchoCanceller::addPlayed(std::span<const float> samples) noexcept {
  const std::lock_guard lock(lock_);
  if (!filter_) return;
  keepPlayed(playedTimeline_.place(clock_.monotonicSeconds(), samples.size()), samples);
}

void EchoCanceller::keepPlayed(std::int64_t position, std::span<const float> samples) {
  // Nothing was played in a gap.
  for (std::int64_t gap = std::max(playedEnd_, position - kPlayedLength); gap < position; ++gap) {
    played_[ringIndex(gap)] = 0;
  }
  for (const float sample : samples) played_[ringIndex(position++)] = toInteger(sample);
  playedEnd_ = position;
}

std::span<const float> EchoCanceller::withoutEcho(std::span<const float> samples) noexcept {
  const std::lock_guard lock(lock_);
  if (!filter_) return samples;
  const std::int64_t position = heardTimeline_.place(clock_.monotonicSeconds(), samples.size());
  heardBegin_ = position - static_cast<std::int64_t>(heard_.size());
  std::ranges::transform(samples, std::back_inserter(heard_), toInteger);
  output_.clear();
  while (heard_.size() >= kWait + kFrame) cancelFrame();
  return output_;
}

void EchoCanceller::cancelFrame() {
  std::array<std::int16_t, kFrame> played{};
  for (std::size_t i = 0; i < played.size(); ++i) {
    const std::int64_t position = heardBegin_ + static_cast<std::int64_t>(i) + kLead;
    const bool isKept = position < playedEnd_ && position >= playedEnd_ - kPlayedLength;
    if (isKept) played[i] = played_[ringIndex(position)];
  }
  std::array<std::int16_t, kFrame> cleared{};
  speex_echo_cancellation(filter_->state, heard_.data(), played.data(), cleared.data());
  std::ranges::transform(cleared, std::back_inserter(output_), [](std::int16_t sample) {
    return static_cast<float>(sample) / 32'767.0F;
  });
  heard_.erase(heard_.begin(), heard_.begin() + kFrame);
  heardBegin_ += kFrame;
}

}  // namespace velun
