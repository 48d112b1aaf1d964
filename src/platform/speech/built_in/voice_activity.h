// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <deque>
#include <span>

namespace velun {

/// Tells frames with a voice from frames without, by their level above the background. The
/// background is the quietest tenth of a second of the last seconds: speech has gaps, noise has
/// none, so a noise that stays is taken for background soon.
class VoiceActivity {
 public:
  /// 10 ms at 16 kHz.
  static constexpr std::size_t kFrameLength = 160;

  /// Whether one frame of 160 samples in -1…1 is loud enough to be a voice.
  bool isVoice(std::span<const float> frame);

  /// Whether the last frame repeated itself at the pitch of a voice, 70 to 400 Hz.
  bool isPitched() const { return isPitched_; }
  /// The level of the last frame in dB below full scale.
  float level() const { return level_; }

 private:
  /// The pitch is looked for at a quarter of the rate: 40 ms compared with what came up to one
  /// period of 70 Hz before.
  static constexpr std::size_t kPitchWindow = 160;
  static constexpr std::size_t kLongestPeriod = 57;

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
  std::array<float, kLongestPeriod + kPitchWindow> slow_{};
};

}  // namespace velun
