// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <optional>

namespace velun {

/// How fast a recognizer decoded. Any thread.
class DecodingSpeed {
 public:
  /// Receives the time of decoding per time of audio of a run, when the run ends, on its decode
  /// thread.
  using Report = std::function<void(double realTimeFactor)>;

  /// Less audio than this says too little: the first seconds after loading are slower. Seconds.
  static constexpr double kMinSeconds = 20;

  /// Adds decoded audio and the time that it took. Seconds.
  void add(double audio, double decoding) {
    audio_ += audio;
    decoding_ += decoding;
  }

  /// Nullopt while too little audio has been decoded.
  std::optional<double> realTimeFactor() const {
    return audio_ < kMinSeconds ? std::nullopt : std::optional(decoding_ / audio_);
  }

 private:
  double audio_ = 0;
  double decoding_ = 0;
};

}  // namespace velun
