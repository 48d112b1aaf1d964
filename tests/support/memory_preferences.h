// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/preference_store.h"

#include <QHash>

namespace velun::test {

/// A preference store in memory that counts its writes.
class MemoryPreferences final : public PreferenceStore {
 public:
  std::optional<PreferenceValue> value(const QString& key) const override {
    const auto found = values.constFind(key);
    return found == values.constEnd() ? std::nullopt : std::optional(*found);
  }
  void set(const QString& key, PreferenceValue value) override {
    values[key] = std::move(value);
    ++writes;
  }

  QHash<QString, PreferenceValue> values;
  int writes = 0;
};

}  // namespace velun::test
