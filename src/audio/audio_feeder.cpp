// SPDX-License-Identifier: GPL-3.0-or-later
#include "audio/audio_feeder.h"

#include <algorithm>
#include <exception>
#include <utility>

namespace velun {

AudioFeeder::AudioFeeder(std::shared_ptr<SpeechInput> input, const Clock& clock)
    : input_(std::move(input)), clock_(clock), lastFeed_(clock.monotonicSeconds()) {}

void AudioFeeder::feed(std::span<const float> samples) noexcept {
  const double now = clock_.monotonicSeconds();
  lastFeed_.store(now, std::memory_order_relaxed);
  if (samples.empty()) return;
  measure(samples);
  try {
    input_->yield({.samples = {samples.begin(), samples.end()}, .heardUntil = now});
    hasFedAudio_.store(true, std::memory_order_relaxed);
  } catch (const std::exception&) {
    // Out of memory: these samples are lost, the capture continues.
  }
}

std::vector<float> AudioFeeder::bands() const {
  const std::lock_guard lock(bandsLock_);
  if (!hasBands_) return {};
  return {latestBands_.begin(), latestBands_.end()};
}

void AudioFeeder::measure(std::span<const float> samples) {
  spectrum_.append(samples);
  const std::span<const float> levels = spectrum_.bands();
  if (levels.empty()) return;
  const std::lock_guard lock(bandsLock_);
  std::copy(levels.begin(), levels.end(), latestBands_.begin());
  hasBands_ = true;
}

}  // namespace velun
