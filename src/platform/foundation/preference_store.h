// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <QString>
#include <variant>

namespace velun {

/// The value of a preference. The types are distinct: the text "no" is not a boolean.
using PreferenceValue = std::variant<bool, double, QString>;

/// A per-user store of named preferences. Main thread.
class PreferenceStore {
 public:
  virtual ~PreferenceStore() = default;

  /// The stored value; none if there is no such key.
  virtual std::optional<PreferenceValue> value(const QString& key) const = 0;

  /// Stores and writes at once. If writing fails, the value is kept in memory for this run.
  virtual void set(const QString& key, PreferenceValue value) = 0;

  /// The value of type `T`; none if it is missing or of another type.
  template <class T>
  std::optional<T> get(const QString& key) const {
    const std::optional<PreferenceValue> stored = value(key);
    if (!stored) return std::nullopt;
    const T* typed = std::get_if<T>(&*stored);
    return typed ? std::optional<T>(*typed) : std::nullopt;
  }
};

}  // namespace velun
