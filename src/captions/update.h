// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <type_traits>
#include <utility>

namespace velun {

/// Assigns `value` to `property`. Returns whether that changed it, so that the property's signal is
/// emitted only then.
template <class Value>
bool update(Value& property, std::type_identity_t<Value> value) {
  if (property == value) return false;
  property = std::move(value);
  return true;
}

}  // namespace velun
