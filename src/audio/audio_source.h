// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audio/pcm_buffer.h"

#include <functional>

namespace velun {

/// A source of captured sound, made for one run: started once, stopped once. Main thread, except
/// that the handler is called on a capture thread.
class AudioSource {
 public:
  /// Takes one buffer, valid during the call, in the buffer's own format.
  using Handler = std::function<void(const PcmBuffer&)>;

  virtual ~AudioSource() = default;

  /// Throws `Failure` when the capture cannot be set up; what was made so far is left for `stop`.
  virtual void start(Handler handler) = 0;

  /// Never fails; harmless after a failed, partial or missing `start`.
  virtual void stop() = 0;
};

}  // namespace velun
