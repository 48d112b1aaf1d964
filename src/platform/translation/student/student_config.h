// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

namespace velun {

/// The sizes of one student network: a Transformer encoder, and a decoder whose layers are a simple
/// recurrent unit, attention to the encoder and a feed-forward part.
struct StudentConfig {
  int width = 0;        ///< Numbers per token (even).
  int feedForward = 0;  ///< Numbers inside a feed-forward part.
  int heads = 0;        ///< Divides `width`.
  int encoderLayers = 0;
  int decoderLayers = 0;
  bool oneVocabulary = false;  ///< Source, target and output share one embedding table.
};

/// Reads the description stored in a model file. Throws `ModelFormatError` for a network that
/// differs in any way from the kind computed here.
StudentConfig parseStudentConfig(std::string_view text);

}  // namespace velun
