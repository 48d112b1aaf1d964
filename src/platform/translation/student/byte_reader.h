// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/translation/student/model_format_error.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

namespace velun {

static_assert(std::endian::native == std::endian::little, "Model files are little endian.");

/// Reads little-endian values in sequence; throws instead of reading past the end.
class ByteReader {
 public:
  explicit ByteReader(std::span<const std::byte> bytes) : rest_(bytes) {}

  std::size_t remaining() const { return rest_.size(); }

  /// The next `count` bytes. Throws `ModelFormatError` when fewer are left.
  std::span<const std::byte> take(std::uint64_t count) {
    if (count > rest_.size()) throw ModelFormatError::damaged("the file ends too early");
    const auto taken = rest_.first(static_cast<std::size_t>(count));
    rest_ = rest_.subspan(static_cast<std::size_t>(count));
    return taken;
  }

  /// The next value, aligned or not. Throws `ModelFormatError` at the end.
  template <class T>
  T value() {
    T result;
    std::memcpy(&result, take(sizeof(T)).data(), sizeof(T));
    return result;
  }

 private:
  std::span<const std::byte> rest_;
};

}  // namespace velun
