// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/built_in/voice_activity.h"

#include <cstddef>
#include <span>
#include <vector>

namespace velun {

/// Finds where phrases begin and end in a stream of audio, 16 kHz mono in -1…1. A phrase ends after
/// a pause; a long one at a shorter pause, at the latest at its quietest place of the last seconds,
/// so that no word is cut.
class PhraseFinder {
 public:
  enum class Event {
    none,
    /// A phrase has begun; `samples` holds a little of what came before it too.
    began,
    /// The phrase may have ended: a good time to begin settling it.
    pausing,
    /// It goes on after all.
    resumed,
    /// It has ended; `takePhrase` gives it.
    ended,
  };

  /// Takes one frame of `VoiceActivity::kFrameLength` samples.
  Event accept(std::span<const float> frame);

  /// Ends the phrase under way at once; false when there is none.
  bool end();

  /// The phrase that has ended. What of the audio belongs to the next phrase already (after a cut)
  /// stays, and the next phrase is under way then.
  std::vector<float> takePhrase();

  bool isInPhrase() const { return isInPhrase_; }
  /// The phrase under way so far.
  const std::vector<float>& samples() const { return samples_; }
  /// Whether it moves and has a pitch as speech does; noise has no pitch and tones do not move.
  bool isLikelySpeech() const;
  /// How much of it was voice, in seconds.
  double voicedSeconds() const;

 private:
  Event continuePhrase(bool isVoice);
  std::size_t quietestPlace() const;
  void begin();

  VoiceActivity activity_;
  bool isInPhrase_ = false;
  bool isPausing_ = false;
  int voicedFrames_ = 0;
  int silentFrames_ = 0;
  int pitchedFrames_ = 0;
  /// Sums over the voiced frames, for how much the level moves.
  double levelSum_ = 0;
  double levelSquares_ = 0;
  /// Voice among the last frames while no phrase is under way, newest in the lowest bit.
  unsigned recentVoice_ = 0;
  std::vector<float> samples_;
  /// The level of each frame of the phrase, in dB.
  std::vector<float> levels_;
  /// Where the ended phrase was cut, in samples; its whole length otherwise.
  std::size_t cut_ = 0;
};

}  // namespace velun
