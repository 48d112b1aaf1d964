// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/linux/built_in/voice_activity.h"

#include <algorithm>
#include <cmath>

namespace velun {

namespace {

/// Takes the hum out of the measured level.
constexpr float kPreEmphasis = 0.95F;
constexpr int kBlockFrames = 10;
/// Gaps between words come more often than this.
constexpr std::size_t kBlocksRemembered = 40;
/// How far a voice stands above the background.
constexpr float kVoiceMargin = 8.0F;
/// Digital silence is no background: quieter sounds than this are never a voice.
constexpr float kQuietestBackground = -62.0F;
/// Until so many frames were heard, what is heard may be speech that began with the audio.
constexpr int kFramesToTrust = 200;
constexpr float kLoudestUntrusted = -45.0F;

float decibels(double power) {
  return static_cast<float>(10.0 * std::log10(power + 1e-12));
}

}  // namespace

bool VoiceActivity::isVoice(std::span<const float> frame) {
  double power = 0;
  for (const float sample : frame) {
    const float emphasised = sample - kPreEmphasis * lastSample_;
    lastSample_ = sample;
    power += static_cast<double>(emphasised) * emphasised;
  }
  power /= static_cast<double>(frame.size());
  level_ = decibels(power);
  blockPower_ += power;
  ++framesHeard_;
  if (++blockFrames_ == kBlockFrames) updateBackground();
  return level_ > background_ + kVoiceMargin;
}

void VoiceActivity::updateBackground() {
  blocks_.push_back(decibels(blockPower_ / kBlockFrames));
  if (blocks_.size() > kBlocksRemembered) blocks_.pop_front();
  blockPower_ = 0;
  blockFrames_ = 0;
  const float quietest = *std::min_element(blocks_.begin(), blocks_.end());
  const float loudest = framesHeard_ < kFramesToTrust ? kLoudestUntrusted : 0.0F;
  background_ = std::clamp(quietest, kQuietestBackground, loudest);
}

}  // namespace velun
