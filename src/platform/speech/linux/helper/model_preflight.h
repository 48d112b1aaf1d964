// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/linux/helper/recognizer_settings.h"

namespace velun {

/// How a model steps through the sound, in seconds.
struct ModelSteps {
  double window = 0;  ///< heard for one step
  double step = 0;    ///< from one to the next
  /// Whether the beginning of a phrase depends on the end of the one before it, unless the stream
  /// is a new one.
  bool remembersTokens = false;
};

/// Checks the recognition model's files for everything that makes the library end the process
/// instead of reporting an error: what is not a model at all, notes that are missing or are not
/// numbers, and a list of tokens with gaps. Throws `std::runtime_error` naming file and reason.
ModelSteps checkRecognitionModel(const RecognizerSettings& settings);

/// The same for the punctuation model.
void checkPunctuationModel(const RecognizerSettings& settings);

}  // namespace velun
