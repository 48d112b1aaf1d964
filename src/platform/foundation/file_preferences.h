// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/preference_store.h"

#include <QJsonObject>
#include <QSet>

namespace velun {

/// Preferences in one JSON file, written whole and atomically at every set. A file that cannot be
/// understood is set aside (".damaged" behind its name) and the defaults are used. Main thread.
class FilePreferences final : public PreferenceStore {
 public:
  /// Reads the file; one that is missing is an empty store.
  explicit FilePreferences(const QString& path);

  /// Where the user's own preferences lie: "app.velun.Velun/preferences.json" in the folder for
  /// configuration.
  static QString userPath();

  std::optional<PreferenceValue> value(const QString& key) const override;
  void set(const QString& key, PreferenceValue value) override;

 private:
  void write();

  QString path_;
  QJsonObject values_;
  /// Keys whose value has not reached the file yet.
  QSet<QString> unwritten_;
};

}  // namespace velun
