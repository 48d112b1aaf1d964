// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/transcription_result.h"

#include <span>
#include <vector>

namespace velun {

/// One recognition model of the helper program, decoding one endless stream of 16 kHz mono audio.
class StreamRecognizer {
 public:
  virtual ~StreamRecognizer() = default;

  /// Decodes the samples; those that are not finite count as silence. Throws `std::runtime_error`.
  virtual void accept(std::span<const float> samples) = 0;

  /// Ends the phrase, as if enough silence had followed.
  virtual void finalize() = 0;

  /// Ends the phrase, because the audio to come does not continue the audio until now.
  virtual void skip() { finalize(); }

  /// Whether a phrase is under way.
  virtual bool isInPhrase() const = 0;

  /// The results since the last call.
  virtual std::vector<TranscriptionResult> takeResults() = 0;
};

}  // namespace velun
