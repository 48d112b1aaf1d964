// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/voice_activity.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace velun {

namespace {

/// Reduces low-frequency hum in the measured level.
constexpr float kPreEmphasis = 0.95F;
constexpr int kBlockFrames = 10;
/// 4 s. There are gaps between words in any such time.
constexpr std::size_t kMaxBlocks = 40;
/// How much louder than the background a voice is, in dB.
constexpr float kVoiceMargin = 8.0F;
/// In dB. A lower limit, so that quiet noise after digital silence is not taken for a voice.
constexpr float kMinBackground = -76.0F;
/// The first frames may all be speech; until this many have arrived, the background is assumed to
/// be no louder than `kMaxEarlyBackground` (dB).
constexpr int kEarlyFrames = 200;
constexpr float kMaxEarlyBackground = -45.0F;

/// The pitch is measured at a quarter of the rate, where a period of 400 Hz has 10 samples.
constexpr std::size_t kDecimation = 4;
constexpr std::size_t kMinPeriod = 10;
/// The minimum correlation with the sound one period earlier; 1 means equal.
constexpr float kMinCorrelation = 0.55F;

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
  updatePitch(frame);
  return level_ > background_ + kVoiceMargin;
}

void VoiceActivity::updateBackground() {
  blocks_.push_back(decibels(blockPower_ / kBlockFrames));
  if (blocks_.size() > kMaxBlocks) blocks_.pop_front();
  blockPower_ = 0;
  blockFrames_ = 0;
  const float quietest = *std::min_element(blocks_.begin(), blocks_.end());
  const float loudest = framesHeard_ < kEarlyFrames ? kMaxEarlyBackground : 0.0F;
  background_ = std::clamp(quietest, kMinBackground, loudest);
}

void VoiceActivity::updatePitch(std::span<const float> frame) {
  const std::size_t added = frame.size() / kDecimation;
  std::copy(slow_.begin() + static_cast<std::ptrdiff_t>(added), slow_.end(), slow_.begin());
  for (std::size_t i = 0; i < added; ++i) {
    const float* four = frame.data() + i * kDecimation;
    const float mean = (four[0] + four[1] + four[2] + four[3]) / kDecimation;
    // A rumble correlates with itself at any short distance; its differences do not.
    slow_[slow_.size() - added + i] = mean - kPreEmphasis * lastMean_;
    lastMean_ = mean;
  }
  const std::span<const float> window = std::span(slow_).last(kPitchWindow);
  const auto product = [](std::span<const float> a, std::span<const float> b) {
    return std::inner_product(a.begin(), a.end(), b.begin(), 1e-9F);
  };
  const float energy = product(window, window);
  float best = 0;
  for (std::size_t period = kMinPeriod; period <= kMaxPeriod; ++period) {
    const auto earlier = std::span(slow_).subspan(kMaxPeriod - period, kPitchWindow);
    const float likeness = product(window, earlier) / std::sqrt(energy * product(earlier, earlier));
    best = std::max(best, likeness);
  }
  isPitched_ = best > kMinCorrelation;
}

}  // namespace velun
