// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audio/audio_target.h"

#include <utility>
#include <vector>

namespace velun {

/// What one run captions: one target, or the computer's sound and a microphone at once.
class CaptionTargets {
 public:
  /// The default output.
  CaptionTargets() : all_(1) {}
  CaptionTargets(AudioTarget only) : all_{std::move(only)} {}  // NOLINT: one target is its own list
  CaptionTargets(AudioTarget computer, AudioTarget microphone)
      : all_{std::move(computer), std::move(microphone)} {}

  /// One or two.
  const std::vector<AudioTarget>& all() const { return all_; }
  const AudioTarget& first() const { return all_.front(); }

 private:
  std::vector<AudioTarget> all_;
};

}  // namespace velun
