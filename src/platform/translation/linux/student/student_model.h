// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/translation/linux/student/embedding_table.h"
#include "platform/translation/linux/student/layers.h"
#include "platform/translation/linux/student/student_config.h"
#include "platform/translation/linux/student/student_model_file.h"

#include <optional>
#include <span>
#include <stop_token>
#include <vector>

namespace velun {

/// The network of a small translation model: tokens of a source sentence in, tokens of its
/// translation out. One thread at a time.
class StudentModel {
 public:
  /// The tokens with a meaning of their own.
  struct SpecialTokens {
    int end = 0;      ///< closes every sentence
    int unknown = 1;  ///< never put out
  };

  /// Throws `ModelFormatError`.
  explicit StudentModel(StudentModelFile file);

  int sourceVocabulary() const { return sourceTable_.tokens(); }
  int targetVocabulary() const { return targetTable_.tokens(); }
  bool hasOneVocabulary() const { return config_.oneVocabulary; }

  /// The likeliest translation, chosen greedily and ended by the end token unless it reached twice
  /// the source's length. `source` ends with the end token and is not empty otherwise either.
  /// `candidates` are the tokens to choose from, ascending; none: all. Throws `Cancelled` soon
  /// after a stop was requested.
  std::vector<int> translate(std::span<const int> source, const SpecialTokens& special,
                             const std::optional<std::vector<int>>& candidates,
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
