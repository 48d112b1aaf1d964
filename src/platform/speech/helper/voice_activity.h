// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <deque>
#include <span>

namespace velun {

/// Detects voice by the level of a frame above the background: the level of the quietest tenth of a
/// second in the last seconds. Speech has gaps, so only continuous noise raises the background.
class VoiceActivity {
 public:
  /// 10 ms at 16 kHz.
  static constexpr std::size_t kFrameLength = 160;

  /// Whether one frame of 160 samples in -1…1 is loud enough to be a voice.
  bool isVoice(std::span<const float> frame);

  /// Whether the last frame had a pitch of 70 to 400 Hz.
  bool isPitched() const { return isPitched_; }
  /// The level of the last frame in dB below full scale.
  float level() const { return level_; }

 private:
  /// The pitch is computed at a quarter of the sample rate: 40 ms are compared with the audio up to
  /// one period of 70 Hz earlier.
  static constexpr std::size_t kPitchWindow = 160;
  static constexpr std::size_t kMaxPeriod = 57;

  void updateBackground();
  void updatePitch(std::span<const float> frame);

  float lastSample_ = 0;
  float level_ = -90;
  float background_ = -60;
  double blockPower_ = 0;
  int blockFrames_ = 0;
  int framesHeard_ = 0;
  std::deque<float> blocks_;
  bool isPitched_ = false;
  float lastMean_ = 0;
  std::array<float, kMaxPeriod + kPitchWindow> slow_{};
};

}  // namespace velun
