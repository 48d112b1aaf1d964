// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <QString>
#include <variant>

namespace velun {

/// The kinds of value that a preference can hold. Kept apart: a text "no" is not a boolean.
using PreferenceValue = std::variant<bool, double, QString>;

/// A per-user store of named preferences. Main thread.
class PreferenceStore {
 public:
  virtual ~PreferenceStore() = default;

  /// The stored value, or none when the key is missing (which is not the same as false).
  virtual std::optional<PreferenceValue> value(const QString& key) const = 0;

  /// Stores and writes through at once. A write that fails keeps the value in memory for this run.
  virtual void set(const QString& key, PreferenceValue value) = 0;

  /// The value of that kind, or none when it is missing or of another kind.
  template <class T>
  std::optional<T> get(const QString& key) const {
    const std::optional<PreferenceValue> stored = value(key);
    if (!stored) return std::nullopt;
    const T* typed = std::get_if<T>(&*stored);
    return typed ? std::optional<T>(*typed) : std::nullopt;
  }
};

}  // namespace velun
