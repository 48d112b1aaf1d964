// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/translation/student/replacement_tables.h"

#include "platform/foundation/protobuf_reader.h"
#include "platform/translation/student/byte_reader.h"
#include "platform/translation/student/model_format_error.h"

#include <cstdint>
#include <string>
#include <vector>

namespace velun {

namespace {

using Bytes = std::span<const std::byte>;

// Fields of the messages of a SentencePiece model (its sentencepiece_model.proto).
constexpr std::uint32_t kNormalizerField = 3;    // normalizer_spec
constexpr std::uint32_t kDenormalizerField = 5;  // denormalizer_spec
constexpr std::uint32_t kTableField = 2;         // precompiled_charsmap

ModelFormatError damaged() {
  return ModelFormatError::damaged("a replacement of the vocabulary is outside of its table");
}

// A unit of a double-array trie as Darts-clone packs it: a label or a value, and the offset that is
// combined with its index to find the units that follow.
bool isValue(std::uint32_t unit) {
  return unit >> 31 != 0;
}
bool hasValue(std::uint32_t unit) {
  return (unit >> 8 & 1) != 0;
}
std::uint32_t value(std::uint32_t unit) {
  return unit & 0x7FFFFFFF;
}
std::uint32_t offset(std::uint32_t unit) {
  return unit >> 10 << ((unit & 1U << 9) >> 6);
}

/// A table consists of the size of its trie in bytes, the trie, and the replacement texts, each
/// ending in NUL. The values of the trie are offsets into the texts.
void checkTable(Bytes table) {
  ByteReader reader(table);
  ByteReader trie(reader.take(reader.value<std::uint32_t>()));
  const Bytes texts = reader.take(reader.remaining());
  if (texts.empty() || texts.back() != std::byte{0}) throw damaged();

  std::vector<std::uint32_t> units;
  units.reserve(trie.remaining() / sizeof(std::uint32_t));
  while (trie.remaining() > 0) units.push_back(trie.value<std::uint32_t>());
  if (units.empty()) throw damaged();
  for (std::size_t index = 0; index < units.size(); ++index) {
    const std::uint32_t unit = units[index];
    // A search starts at the first unit, even if that is a value; it never continues from another.
    if (index > 0 && isValue(unit)) continue;
    const std::size_t next = index ^ offset(unit);
    if ((next | 0xFF) >= units.size()) throw damaged();
    if (hasValue(unit) && value(units[next]) >= texts.size()) throw damaged();
  }
}

}  // namespace

void checkReplacementTables(Bytes model) {
  try {
    for (ProtobufReader parts(model); !parts.atEnd();) {
      const ProtobufReader::Field part = parts.next();
      if (part.number != kNormalizerField && part.number != kDenormalizerField) continue;
      for (ProtobufReader fields(part.bytes); !fields.atEnd();) {
        const ProtobufReader::Field field = fields.next();
        if (field.number == kTableField && !field.bytes.empty()) checkTable(field.bytes);
      }
    }
  } catch (const ProtobufError& error) {
    throw ModelFormatError::damaged(std::string("the vocabulary: ") + error.what());
  }
}

}  // namespace velun
