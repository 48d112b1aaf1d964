// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/helper/voice_activity.h"

#include <deque>
#include <span>
#include <vector>

namespace velun {

/// Raises the voice of a quiet source to the level at which recognition works best. The gain
/// follows the voice of the last seconds, so that it hardly changes inside a word; noise does not
/// change it. For an endless stream of 16 kHz mono audio.
class SlowGain {
 public:
  /// The samples, which are finite and in -1…1, times the gain.
  std::vector<float> amplified(std::span<const float> samples);

  /// The present gain, 1…30.
  float gain() const { return gain_; }

 private:
  void takeFrame(std::span<const float> frame);
  float wantedGain() const;

  VoiceActivity activity_;
  std::vector<float> partialFrame_;
  std::deque<float> voicePowers_;  ///< of the last frames with voice, as mean squares
  float gain_ = 1;
};

}  // namespace velun
