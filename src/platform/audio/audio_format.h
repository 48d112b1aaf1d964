// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace velun {

/// How the samples of a PCM buffer are laid out.
struct AudioFormat {
  enum class Sample { float32, int16 };

  Sample sample = Sample::float32;
  /// Frames per second.
  double sampleRate = 0;
  int channelCount = 0;
  /// Frame by frame (true) or channel by channel.
  bool isInterleaved = true;

  bool operator==(const AudioFormat&) const = default;
};

}  // namespace velun
