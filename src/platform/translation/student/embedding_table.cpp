// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/translation/student/embedding_table.h"

#include "platform/translation/student/model_format_error.h"

#include <cstring>

namespace velun {

EmbeddingTable::EmbeddingTable(const ModelItem& item, int width)
    : type_(item.type), data_(item.data), tokens_(item.rows()) {
  if (item.shape.size() != 2 || item.columns() != width || type_ == ModelItem::Type::characters) {
    throw ModelFormatError::damaged("an embedding table of another size");
  }
  if (type_ == ModelItem::Type::int8) {
    float multiplier = 1;
    std::memcpy(&multiplier, data_.data() + item.elements(), sizeof multiplier);
    unit_ = 1.0F / multiplier;
  }
}

void EmbeddingTable::read(int token, float factor, std::span<float> result) const {
  const std::size_t from = static_cast<std::size_t>(token) * result.size();
  if (type_ == ModelItem::Type::float32) {
    std::memcpy(result.data(), data_.data() + from * sizeof(float), result.size_bytes());
    for (float& value : result) value *= factor;
    return;
  }
  const auto* steps = reinterpret_cast<const std::int8_t*>(data_.data()) + from;
  for (std::size_t i = 0; i < result.size(); ++i) {
    result[i] = static_cast<float>(steps[i]) * unit_ * factor;
  }
}

}  // namespace velun
