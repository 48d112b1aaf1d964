// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <deque>

namespace velun {

/// When the audio of a run was heard, by the source's clock: pauses of a source and audio that was
/// skipped are not part of the audio. One thread at a time.
class SourceTimes {
 public:
  /// Audio up to `audioEnd`, in seconds of the run's audio, was heard until `sourceEnd`.
  void add(double audioBegin, double audioEnd, double sourceEnd);

  /// When the audio at `audio` was heard. Only for what was added in the last minutes.
  double at(double audio) const;

 private:
  struct Piece {
    double begin = 0;   ///< in the run's audio
    double offset = 0;  ///< of the source's time
  };
  std::deque<Piece> pieces_;
};

}  // namespace velun
