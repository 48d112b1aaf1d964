// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace velun {

/// Mixes interleaved channels down to one: the mean of the channels that carry sound. Silent
/// channels do not count, so a microphone in one of eight inputs keeps its level. A channel still
/// counts for about ten seconds after its last sound, so that the level does not change with every
/// pause.
class MonoMixer {
 public:
  explicit MonoMixer(std::size_t channelCount);

  /// Returns one sample for each whole frame, valid until the next call. Samples that are not
  /// finite or louder than any sound become 0. Allocates only while buffers grow. The sample rate
  /// is `AudioSource::kSampleRate`.
  std::span<const float> mix(std::span<const float> interleaved);

 private:
  float gain() const;

  /// The highest absolute sample of each channel, decreasing with time.
  std::vector<float> peaks_;
  std::vector<float> mono_;
};

}  // namespace velun
