// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/helper/voice_activity.h"

#include <cstddef>
#include <span>
#include <vector>

namespace velun {

/// Finds the beginnings and ends of phrases in 16 kHz mono audio in -1…1. A phrase ends after a
/// pause; a long one after a shorter pause, or without any at the quietest place of its last
/// seconds, so that no word is cut.
class PhraseDetector {
 public:
  enum class Event {
    none,
    /// A phrase has started; `samples` includes a little audio from before it.
    began,
    /// The phrase has ended; call `takePhrase`.
    ended,
  };

  /// Takes one frame of `VoiceActivity::kFrameLength` samples.
  Event accept(std::span<const float> frame);

  /// Ends the current phrase at once; returns false when there is none.
  bool end();

  /// Whether the phrase that has ended was cut, or ended at a pause that ends only long phrases:
  /// its sentence may go on.
  bool mayGoOn() const { return mayGoOn_; }

  /// Seconds without voice at the end of the phrase that has ended; 0 after a cut.
  double closingPause() const;

  /// The phrase that has ended. After a cut, the rest of the audio becomes the beginning of the
  /// next phrase.
  std::vector<float> takePhrase();

  bool isInPhrase() const { return isInPhrase_; }
  /// The audio of the current phrase so far.
  const std::vector<float>& samples() const { return samples_; }
  /// Whether the level varies and there is a pitch, as in speech; noise has no pitch, and the level
  /// of tones is constant.
  bool isLikelySpeech() const;
  /// Seconds of voice in the current phrase.
  double voicedSeconds() const;

 private:
  Event continuePhrase(bool isVoice);
  std::size_t quietestPlace() const;
  void begin();

  VoiceActivity activity_;
  bool isInPhrase_ = false;
  bool mayGoOn_ = false;
  int voicedFrames_ = 0;
  int silentFrames_ = 0;
  int pitchedFrames_ = 0;
  /// Sums over the voiced frames, for the variance of the level.
  double levelSum_ = 0;
  double levelSquares_ = 0;
  /// Between phrases: which of the last frames had voice, the newest in the lowest bit.
  unsigned recentVoice_ = 0;
  std::vector<float> samples_;
  /// The level of each frame of the phrase, in dB.
  std::vector<float> levels_;
  /// Where the ended phrase was cut, in samples; its length if it was not cut.
  std::size_t cut_ = 0;
};

}  // namespace velun
