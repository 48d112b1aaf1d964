// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/helper/recognizer_settings.h"

namespace velun {

/// The decoding steps of a streaming model, in seconds.
struct ModelSteps {
  double window = 0;  ///< audio that one step needs
  double step = 0;    ///< distance between two steps
  /// Whether the decoder keeps the last tokens of a phrase for the next one in the same stream.
  bool remembersTokens = false;
};

/// Checks the recognition model's files for everything on which sherpa-onnx ends the process
/// instead of reporting an error: files that are no models, metadata that is missing or not
/// numeric, and a token list with gaps. Throws `std::runtime_error` naming the file and the reason.
ModelSteps checkRecognitionModel(const RecognizerSettings& settings);

/// The same for the punctuation model.
void checkPunctuationModel(const RecognizerSettings& settings);

/// The same for the speaker model.
void checkSpeakerModel(const RecognizerSettings& settings);

}  // namespace velun
