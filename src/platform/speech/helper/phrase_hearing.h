// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/helper/vosk_decoder.h"

#include <cstddef>
#include <span>
#include <vector>

namespace velun {

/// A phrase that has ended.
struct EndedPhrase {
  std::vector<float> audio;  ///< 16 kHz mono, as it was recorded
  double begin = 0;          ///< seconds of the stream
  double voicedSeconds = 0;
  double closingPause = 0;  ///< seconds without voice at its end
  bool isLikelySpeech = false;
  bool mayGoOn = false;  ///< it was cut, so its sentence may go on
  float gain = 1;        ///< what its own level needs
  /// What the level before it needed, or, once a second of voice was heard, its own: the first
  /// hearing had this one.
  float draftGain = 1;
};

/// Hears phrases with libvosk, one after the other, each of them twice. The first hearing goes on
/// while the phrase lasts. At its end the phrase is heard again, adapted to its voice, for the
/// final words: this removes a fifth of the errors (docs/recognition.md). For one thread.
class PhraseHearing {
 public:
  explicit PhraseHearing(VoskDecoder decoder) : decoder_(std::move(decoder)) {}

  /// Another one with the same model, for one other thread. Throws `std::runtime_error`.
  PhraseHearing another() const { return PhraseHearing(decoder_.another()); }

  /// More of the phrase, for the first hearing; amplified.
  void accept(std::span<const float> audio) { decoder_.accept(audio); }
  /// The words of the first hearing so far.
  const HeardWords& words() { return decoder_.words(); }
  /// Forgets the first hearing.
  void restart() { decoder_.end(); }

  /// The final words of the phrase, whose audio was accepted; none if it was noise. Their times are
  /// seconds since its beginning.
  HeardWords finish(const EndedPhrase& phrase);

 private:
  HeardWords finalWords(const EndedPhrase& phrase);
  /// The hearing that gave the drafts, or another one if that was unsure and had the wrong level.
  /// `audio` has the right one.
  HeardWords firstHearing(const EndedPhrase& phrase, std::span<const float> audio);
  HeardWords heardAgain(std::span<const float> audio, const HeardWords& first);

  VoskDecoder decoder_;
};

/// Whether the level of a phrase differs so much from the other that it is heard at the wrong one.
bool isOtherLevel(float gain, float other);

/// The words of a phrase as a result; `begin` in seconds of the stream. Without a language they
/// stay as they are, for a program that writes them.
TranscriptionResult resultOf(HeardWords words, double begin, const QString& language);

/// The final result of a phrase.
TranscriptionResult finalResultOf(HeardWords words, const EndedPhrase& phrase,
                                  const QString& language);

}  // namespace velun
