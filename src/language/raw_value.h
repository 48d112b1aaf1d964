// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <QString>

namespace velun {

/// The one of `values` whose `rawValue` is `raw`; nothing for any other text.
template <class Value, std::size_t kCount>
std::optional<Value> valueFromRaw(const std::array<Value, kCount>& values, const QString& raw) {
  for (const Value value : values) {
    if (rawValue(value) == raw) return value;
  }
  return std::nullopt;
}

}  // namespace velun
