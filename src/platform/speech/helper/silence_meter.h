// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/helper/voice_activity.h"

#include <span>
#include <vector>

namespace velun {

/// How long nobody has spoken, by the level of the audio. For an endless stream of 16 kHz mono
/// audio.
class SilenceMeter {
 public:
  /// Adds samples, which are finite and in -1…1.
  void add(std::span<const float> samples);

  /// Seconds since the last voice, up to the last sample added, but for less than 10 ms.
  double seconds() const { return seconds_; }

 private:
  VoiceActivity activity_;
  std::vector<float> partialFrame_;
  double seconds_ = 0;
};

}  // namespace velun
