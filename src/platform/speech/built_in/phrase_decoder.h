// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/built_in/phrase_features.h"
#include "platform/speech/built_in/sphinx_decoder.h"

#include <functional>
#include <optional>

namespace velun {

/// Decodes whole phrases, more accurately than is possible while they are spoken. Takes about 0.14
/// of the duration of the phrase. For one thread.
class PhraseDecoder {
 public:
  /// Loads the model. Throws `Failure`.
  PhraseDecoder();

  /// Takes 16-bit samples at 16 kHz. Calls `isWanted` for each second of audio and returns nullopt
  /// when it is false. PocketSphinx can end a phrase only with another pass over the audio decoded
  /// so far, which takes up to 0.05 of its duration.
  std::optional<QStringList> decode(std::span<const std::int16_t> phrase,
                                    const std::function<bool()>& isWanted);

 private:
  SphinxDecoder decoder_;
  PhraseFeatures features_;
};

}  // namespace velun
