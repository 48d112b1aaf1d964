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
constexpr std::uint32_t kReplacementsBefore = 3;  // normalizer_spec
constexpr std::uint32_t kReplacementsAfter = 5;   // denormalizer_spec
constexpr std::uint32_t kTable = 2;               // precompiled_charsmap

ModelFormatError damaged() {
  return ModelFormatError::damaged("the vocabulary's replacements lead out of their table");
}

// A unit of a double-array trie, as Darts-clone packs it: the byte that leads to it, or a value,
// and what to combine its index with for the units that follow.
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

/// A table is the size of its trie in bytes, the trie, and the texts put in place, each ended by
/// NUL. What the trie finds is where a text begins.
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
    // A search starts at the first unit, whatever it is, and never goes on from a value.
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
      if (part.number != kReplacementsBefore && part.number != kReplacementsAfter) continue;
      for (ProtobufReader fields(part.bytes); !fields.atEnd();) {
        const ProtobufReader::Field field = fields.next();
        if (field.number == kTable && !field.bytes.empty()) checkTable(field.bytes);
      }
    }
  } catch (const ProtobufError& error) {
    throw ModelFormatError::damaged(std::string("the vocabulary: ") + error.what());
  }
}

}  // namespace velun
