// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <stdexcept>

namespace velun {

/// Bytes that are not a valid protocol-buffer message.
class ProtobufError final : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Reads the fields of one message in the wire format of protocol buffers. Any thread.
class ProtobufReader {
 public:
  using Bytes = std::span<const std::byte>;

  explicit ProtobufReader(Bytes message) : rest_(message) {}

  struct Field {
    std::uint32_t number = 0;
    /// The content of a string, bytes or message field; empty for numbers, which are skipped.
    Bytes bytes;
  };

  bool atEnd() const { return rest_.empty(); }

  /// The next field. Throws `ProtobufError`.
  Field next() {
    const std::uint64_t key = varint();
    // Other readers look only at the lowest 32 bits of a key, and would find another field.
    if (key > 0xFFFF'FFFF || key >> 3 == 0) throw ProtobufError("a field has an invalid number");
    Field field{.number = static_cast<std::uint32_t>(key >> 3), .bytes = {}};
    switch (key & 7) {
      case 0:
        varint();
        break;
      case 1:
        take(8);
        break;
      case 2:
        field.bytes = take(varint());
        break;
      case 5:
        take(4);
        break;
      default:
        throw ProtobufError("a field is of an unknown kind");
    }
    return field;
  }

 private:
  std::uint64_t varint() {
    std::uint64_t value = 0;
    for (int shift = 0; shift < 64; shift += 7) {
      const auto byte = std::to_integer<std::uint64_t>(take(1).front());
      value |= (byte & 0x7F) << shift;
      if (byte < 0x80) return value;
    }
    throw ProtobufError("a number has no end");
  }

  Bytes take(std::uint64_t count) {
    if (count > rest_.size()) throw ProtobufError("the file is cut off");
    const Bytes taken = rest_.first(static_cast<std::size_t>(count));
    rest_ = rest_.subspan(static_cast<std::size_t>(count));
    return taken;
  }

  Bytes rest_;
};

}  // namespace velun
