// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/translation/student/student_model_file.h"

#include <span>

namespace velun {

/// The vector of each token of a vocabulary, stored as in the file.
class EmbeddingTable {
 public:
  /// `item` must have `width` columns; its file must outlive the table. Throws `ModelFormatError`
  /// when the item is not such a table.
  EmbeddingTable(const ModelItem& item, int width);

  int tokens() const { return tokens_; }

  /// Writes factor × the vector of `token`, which is in 0 … tokens() - 1.
  void read(int token, float factor, std::span<float> result) const;

 private:
  ModelItem::Type type_;
  std::span<const std::byte> data_;
  int tokens_;
  float unit_ = 1;  // value of one step of an 8-bit number
};

}  // namespace velun
