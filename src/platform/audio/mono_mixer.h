// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace velun {

/// Mixes interleaved channels down to one: the mean of the channels that have carried sound so far.
/// Channels that stay silent do not count, so a microphone in one of eight inputs keeps its level.
class MonoMixer {
 public:
  explicit MonoMixer(std::size_t channelCount);

  /// Returns one sample for each whole frame, valid until the next call. Samples that are not
  /// finite or louder than any sound become 0. Allocates only while buffers grow.
  std::span<const float> mix(std::span<const float> interleaved);

 private:
  float gain() const;

  /// The highest absolute sample of each channel so far.
  std::vector<float> peaks_;
  std::vector<float> mono_;
};

}  // namespace velun
