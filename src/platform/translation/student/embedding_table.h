// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/translation/student/student_model_file.h"

#include <span>

namespace velun {

/// The numbers that stand for each token of a vocabulary, kept as they are in the file.
class EmbeddingTable {
 public:
  /// A table of any token count and the given width. Keeps pointing into `item`'s file.
  /// Throws `ModelFormatError` when the item is something else.
  EmbeddingTable(const ModelItem& item, int width);

  int tokens() const { return tokens_; }

  /// Writes factor × the token's numbers. `token` is in 0 … tokens() - 1.
  void read(int token, float factor, std::span<float> result) const;

 private:
  ModelItem::Type type_;
  std::span<const std::byte> data_;
  int tokens_;
  float unit_ = 1;  // what one step of an 8-bit number is worth
};

}  // namespace velun
