// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/helper/phrase_detector.h"
#include "platform/speech/helper/phrase_hearing.h"

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace velun {

/// Finds the phrases of a stream of 16 kHz mono audio, and the pieces in which each is heard first,
/// so that every way of hearing them gives the same words. Amplifies each piece.
class PhraseFinder {
 public:
  /// A piece for the first hearing.
  struct Step {
    std::vector<float> audio;  ///< more of the phrase, amplified
    double phraseBegin = 0;    ///< seconds of the stream
    /// Whether the phrase until now is like speech.
    bool isLikelySpeech = false;
    /// `audio` is the phrase from its beginning, because its level was not the one expected.
    bool isAgain = false;
    /// The phrase has ended with `audio`.
    std::optional<EndedPhrase> ended = {};
  };

  /// Takes finite samples of any number; returns what is to be heard, in order.
  std::vector<Step> accept(std::span<const float> samples);

  /// Ends the phrase under way, as if enough silence had followed; nullopt if there is none.
  std::optional<Step> end();

  bool isInPhrase() const { return phrases_.isInPhrase(); }

 private:
  std::optional<Step> acceptFrame(std::span<const float> frame);
  void begin();
  Step nextPiece();
  Step endPhrase();
  /// True if the phrase is heard again from its beginning.
  bool checkLevel();

  PhraseDetector phrases_;
  std::vector<float> partialFrame_;
  /// Samples of the phrase that were not heard.
  std::vector<float> waiting_;
  std::size_t taken_ = 0;        ///< samples of all frames
  std::size_t phraseBegin_ = 0;  ///< where the phrase began, in samples
  /// The gain for the first hearing: from the level of the phrase before, until that of the present
  /// one is known.
  float draftGain_ = 1;
  bool isLevelChecked_ = false;
};

}  // namespace velun
