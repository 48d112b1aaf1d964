// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audio/audio_format.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <span>
#include <string>

namespace velun::test {

/// A program that plays sound through PipeWire, as any other on the desktop does.
class PlaybackStream {
 public:
  /// Fills one channel's next frames, −1 … 1; the others get the same. On the stream's thread.
  using Fill = std::function<void(std::span<float>)>;

  /// Plays to `target`, a device name, or the default output when empty. `latencyFrames` is what
  /// the program asks the server for.
  PlaybackStream(const AudioFormat& format, const std::string& target, Fill fill,
                 int latencyFrames = 1024);
  ~PlaybackStream();

  /// A sine that goes on until the stream is destroyed.
  static Fill tone(double frequency, double sampleRate, float amplitude);

 private:
  struct Implementation;
  std::unique_ptr<Implementation> implementation_;
};

}  // namespace velun::test
