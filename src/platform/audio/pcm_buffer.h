// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audio/audio_format.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace velun {

/// A stretch of PCM audio that carries its own format. Either owns its samples or, when it comes
/// from a capture callback, looks at samples that are valid only during that call.
class PcmBuffer {
 public:
  /// Owns zeroed room for `frameCapacity` frames; `frameLength` starts at 0.
  PcmBuffer(const AudioFormat& format, std::size_t frameCapacity);

  /// Looks at `bytes` without copying. The length is the number of whole frames in them.
  static PcmBuffer view(const AudioFormat& format, std::span<const std::byte> bytes);

  const AudioFormat& format() const { return format_; }
  std::size_t frameCapacity() const { return frameCapacity_; }
  std::size_t frameLength() const { return frameLength_; }
  void setFrameLength(std::size_t frames) { frameLength_ = frames; }

  /// All samples of an interleaved buffer, or of a mono one. Empty when the samples are of the
  /// other kind.
  std::span<const float> floatSamples() const;
  std::span<const std::int16_t> int16Samples() const;

  /// The start of channel `channel`'s samples; the distance between two is `stride`. Null when
  /// the samples are of the other kind.
  const float* floatChannel(int channel) const;
  const std::int16_t* int16Channel(int channel) const;
  std::size_t stride() const;

  /// For writing; null for a view.
  std::byte* mutableBytes() { return owned_.get(); }
  const std::byte* bytes() const { return bytes_; }

 private:
  PcmBuffer() = default;

  AudioFormat format_;
  std::size_t frameCapacity_ = 0;
  std::size_t frameLength_ = 0;
  std::unique_ptr<std::byte[]> owned_;
  const std::byte* bytes_ = nullptr;
};

}  // namespace velun
