// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audio/pcm_buffer.h"

#include <cstddef>
#include <functional>

namespace velun {

/// The audio engine's input: the user's default microphone. Main thread, except that the tap block
/// is called on the engine's tap thread between `startEngine` and the return of `stopEngine`.
class AudioInputNode {
 public:
  using TapBlock = std::function<void(const PcmBuffer&)>;

  virtual ~AudioInputNode() = default;

  /// The format in which the input delivers on bus 0.
  virtual AudioFormat outputFormat() const = 0;
  /// Buffers of about `bufferSize` frames go to `block` from the start of the engine on.
  virtual void installTap(std::size_t bufferSize, const AudioFormat& format, TapBlock block) = 0;
  virtual void removeTap() = 0;
  /// Throws `Failure` when there is no microphone or no sound server.
  virtual void startEngine() = 0;
  virtual void stopEngine() = 0;
};

}  // namespace velun
