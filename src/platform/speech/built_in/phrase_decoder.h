// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/built_in/phrase_features.h"
#include "platform/speech/built_in/sphinx_decoder.h"

#include <functional>
#include <optional>

namespace velun {

/// Finds the words of whole phrases, with more care than can be taken while they are spoken. Takes
/// about 0.14 of the phrase's length. Belongs to one thread.
class PhraseDecoder {
 public:
  /// Loads the model. Throws `Failure`.
  PhraseDecoder();

  /// Takes 16-bit samples at 16 kHz. None when `isWanted`, asked every now and then, said no. A
  /// second of audio is the most that is decoded after that, and then what was decoded so far is
  /// heard once more: that is the library's one way to end a phrase, and takes up to 0.05 of its
  /// length.
  std::optional<QStringList> decode(std::span<const std::int16_t> phrase,
                                    const std::function<bool()>& isWanted);

 private:
  SphinxDecoder decoder_;
  PhraseFeatures features_;
};

}  // namespace velun
