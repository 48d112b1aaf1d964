// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/translation/student/embedding_table.h"
#include "platform/translation/student/layers.h"
#include "platform/translation/student/student_config.h"
#include "platform/translation/student/student_model_file.h"

#include <optional>
#include <span>
#include <stop_token>
#include <vector>

namespace velun {

/// The network of a small translation model. Translates the tokens of a sentence. One thread at a
/// time.
class StudentModel {
 public:
  struct Decoding {
    int endToken = 0;      ///< ends every sentence
    int unknownToken = 1;  ///< never part of a translation
    int maxTokens = 0;     ///< maximum length of a translation, end token included
    std::optional<std::vector<int>> candidates;  ///< allowed tokens, ascending; none: all tokens
  };

  /// Throws `ModelFormatError`.
  explicit StudentModel(StudentModelFile file);

  int sourceVocabulary() const { return sourceTable_.tokens(); }
  int targetVocabulary() const { return targetTable_.tokens(); }
  bool hasOneVocabulary() const { return config_.oneVocabulary; }

  /// The translation found by greedy search, with the end token unless it reached the maximum
  /// length. `source` ends with the end token. Throws `Cancelled` soon after a stop request.
  std::vector<int> translate(std::span<const int> source, const Decoding& decoding,
                             std::stop_token stop) const;

 private:
  struct EncoderLayer {
    Attention attention;
    FeedForward feedForward;
  };
  struct DecoderLayer {
    RecurrentUnit recurrent;
    Attention attention;
    FeedForward feedForward;
  };
  struct DecoderState;

  Rows encode(std::span<const int> source, const std::stop_token& stop) const;
  Rows decodeStep(std::optional<int> previous, DecoderState& state) const;

  StudentModelFile file_;
  StudentConfig config_;
  EmbeddingTable sourceTable_;
  EmbeddingTable targetTable_;
  std::vector<EncoderLayer> encoder_;
  std::vector<DecoderLayer> decoder_;
  std::unique_ptr<Linear> output_;
  mutable ProductScratch scratch_;
};

}  // namespace velun
