// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

namespace velun {

/// The sizes of one student network: a Transformer encoder, and a decoder whose layers are a simple
/// recurrent unit, attention to the encoder and a feed-forward part.
struct StudentConfig {
  int width = 0;        ///< Length of a token's vector, an even number.
  int feedForward = 0;  ///< Length of the inner vectors of a feed-forward part.
  int heads = 0;        ///< A divisor of `width`.
  int encoderLayers = 0;
  int decoderLayers = 0;
  bool oneVocabulary = false;  ///< Source, target and output share one embedding table.
};

/// Parses the description stored in a model file. Throws `ModelFormatError` for any other kind of
/// network.
StudentConfig parseStudentConfig(std::string_view text);

}  // namespace velun
