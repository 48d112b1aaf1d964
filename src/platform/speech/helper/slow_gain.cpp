// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/slow_gain.h"

#include "platform/speech/helper/speech_level.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace velun {

namespace {

constexpr std::size_t kFrame = VoiceActivity::kFrameLength;
/// 2 s of voice; and 0.2 s, which tell its level well enough to begin with.
constexpr std::size_t kMaxVoiceFrames = 200;
constexpr std::size_t kMinVoiceFrames = 20;
/// 40 dB in a second of vowels: some 15 dB in a second of talk.
constexpr float kRisePerFrame = 1.0471F;
constexpr float kFallPerFrame = 1 / kRisePerFrame;
/// 12 dB: a voice that is too quiet for a phrase of the built-in recognizer still has words.
constexpr float kSensitivity = 4;
/// A louder sample lowers the gain at once.
constexpr float kMaxPeak = 0.9F;

}  // namespace

std::vector<float> SlowGain::amplified(std::span<const float> samples) {
  std::vector<float> louder;
  louder.reserve(samples.size());
  for (std::size_t at = 0; at < samples.size();) {
    const std::size_t count = std::min(kFrame - partialFrame_.size(), samples.size() - at);
    const auto part = samples.subspan(at, count);
    partialFrame_.insert(partialFrame_.end(), part.begin(), part.end());
    at += count;
    const auto isQuieter = [](float a, float b) {
      return std::abs(a) < std::abs(b);
    };
    const float peak = std::abs(*std::max_element(part.begin(), part.end(), isQuieter));
    if (peak * gain_ > kMaxPeak) gain_ = std::max(1.0F, kMaxPeak / peak);
    for (const float sample : part) louder.push_back(sample * gain_);
    if (partialFrame_.size() == kFrame) {
      takeFrame(partialFrame_);
      partialFrame_.clear();
    }
  }
  return louder;
}

void SlowGain::takeFrame(std::span<const float> frame) {
  if (!activity_.isVoice(velun::amplified(frame, kSensitivity)) || !activity_.isPitched()) return;
  const float power = std::inner_product(frame.begin(), frame.end(), frame.begin(), 0.0F) / kFrame;
  voicePowers_.push_back(power);
  if (voicePowers_.size() > kMaxVoiceFrames) voicePowers_.pop_front();
  if (voicePowers_.size() < kMinVoiceFrames) return;
  gain_ = std::clamp(wantedGain(), gain_ * kFallPerFrame, gain_ * kRisePerFrame);
}

float SlowGain::wantedGain() const {
  const float sum = std::accumulate(voicePowers_.begin(), voicePowers_.end(), 0.0F);
  return gainForLevel(std::sqrt(sum / static_cast<float>(voicePowers_.size())));
}

}  // namespace velun
