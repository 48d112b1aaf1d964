// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/translation/student/replacement_tables.h"

#include "platform/translation/student/byte_reader.h"
#include "platform/translation/student/model_format_error.h"

#include <cstdint>
#include <functional>
#include <limits>
#include <vector>

namespace velun {

namespace {

using Bytes = std::span<const std::byte>;

// Fields of the messages of a SentencePiece model (its sentencepiece_model.proto).
constexpr std::uint64_t kReplacementsBefore = 3;  // normalizer_spec
constexpr std::uint64_t kReplacementsAfter = 5;   // denormalizer_spec
constexpr std::uint64_t kTable = 2;               // precompiled_charsmap

ModelFormatError damaged() {
  return ModelFormatError::damaged("the vocabulary's replacements lead out of their table");
}

/// A number of seven bits a byte, the lowest first, as protocol buffers write it.
std::uint64_t varint(ByteReader& reader) {
  std::uint64_t result = 0;
  for (int shift = 0; shift < 64; shift += 7) {
    const auto byte = reader.value<std::uint8_t>();
    result |= static_cast<std::uint64_t>(byte & 0x7F) << shift;
    if (byte < 0x80) return result;
  }
  throw ModelFormatError::damaged("a number of the vocabulary has no end");
}

/// Calls `found` with the number and content of every field of a message that consists of bytes.
void forEachBytesField(Bytes message, const std::function<void(std::uint64_t, Bytes)>& found) {
  ByteReader reader(message);
  while (reader.remaining() > 0) {
    const std::uint64_t key = varint(reader);
    // The library looks at the lowest 32 bits of a key only, and would find another field.
    if (key > std::numeric_limits<std::uint32_t>::max())
      throw ModelFormatError::damaged("a field of the vocabulary is unknown");
    switch (key & 7) {
      case 0:
        varint(reader);
        break;
      case 1:
        reader.take(8);
        break;
      case 2:
        found(key >> 3, reader.take(varint(reader)));
        break;
      case 5:
        reader.take(4);
        break;
      default:
        throw ModelFormatError::damaged("a field of the vocabulary is of an unknown kind");
    }
  }
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
  forEachBytesField(model, [](std::uint64_t part, Bytes content) {
    if (part != kReplacementsBefore && part != kReplacementsAfter) return;
    forEachBytesField(content, [](std::uint64_t field, Bytes table) {
      if (field == kTable && !table.empty()) checkTable(table);
    });
  });
}

}  // namespace velun
