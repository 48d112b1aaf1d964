// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/voice_print.h"

#include <optional>
#include <QString>
#include <vector>

namespace velun {

/// One word as a recognizer heard it.
struct RecognizedWord {
  QString text;
  /// Seconds of audio since the recognizer was created; since the beginning of the run in the
  /// signals of a `SpeechRun`.
  double start = 0;
  double end = 0;
  /// How sure the recognizer is, 0…1.
  double confidence = 1;

  bool operator==(const RecognizedWord&) const = default;
};

/// When words were said, in seconds of the source's clock: that of a live source is the program's
/// monotonic one, that of a recording starts with it.
struct SpokenSpan {
  double start = 0;
  double end = 0;

  bool operator==(const SpokenSpan&) const = default;
};

/// The text of one phrase: a draft that may change, or final.
struct TranscriptionResult {
  QString text;
  bool isFinal = false;
  /// The words as they were heard, before case, punctuation and numbers were written; empty when
  /// the recognizer does not tell them.
  std::vector<RecognizedWord> words = {};
  /// Of a final result: long speech was cut, without a pause or at a breath, so the sentence may go
  /// on in the next result.
  bool isCut = false;
  /// Of a final result: no word of the audio before is final later, and no word after it is final
  /// yet. Seconds like those of the words; nullopt if it is not known.
  std::optional<double> until = {};
  /// Of a final result of a `SpeechRun`, if it is known when its words were said.
  std::optional<SpokenSpan> spoken = {};
  /// Of a final result of a `SpeechRun`: the voice that said it, if it is known.
  std::optional<VoicePrint> voice = {};

  bool operator==(const TranscriptionResult&) const = default;
};

}  // namespace velun
