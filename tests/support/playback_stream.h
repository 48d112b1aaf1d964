// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>
#include <span>
#include <string>

namespace velun::test {

struct PlaybackFormat {
  /// Otherwise 16-bit.
  bool isFloat = true;
  int sampleRate = 48'000;
  int channelCount = 2;
};

/// A program that plays sound through PipeWire, as any other on the desktop does.
class PlaybackStream {
 public:
  /// Fills one channel's next frames, −1 … 1. On the stream's thread.
  using Fill = std::function<void(std::span<float>)>;

  static constexpr int everyChannel = -1;

  /// Plays to `target`, a device name, and nowhere else, or to the default output when empty; the
  /// same in every channel or in one only. Six channels are FL FR FC LFE RL RR, more are AUX0, AUX1
  /// and so on. `program` is the name of the program to which mixers count the stream.
  PlaybackStream(const PlaybackFormat& format, const std::string& target, Fill fill,
                 int channel = everyChannel, const std::string& program = "Player");
  ~PlaybackStream();

  /// A sine that plays until the stream is destroyed.
  static Fill tone(double frequency, double sampleRate, float amplitude);

  /// A sine of amplitude 0.5 in stereo at 48 kHz.
  static std::unique_ptr<PlaybackStream> play(const std::string& target, double frequency,
                                              const std::string& program = "Player");

 private:
  struct Implementation;
  std::unique_ptr<Implementation> implementation_;
};

}  // namespace velun::test
