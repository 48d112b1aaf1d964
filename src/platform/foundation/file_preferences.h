// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/preference_store.h"

#include <QJsonObject>
#include <QSet>

namespace velun {

/// Preferences in one JSON file, which is replaced atomically by every set(). A file that is
/// damaged is renamed (".damaged" is appended, and a number if necessary) and the defaults are
/// used. A file that cannot be read is left alone: it is not written before it has been read. Main
/// thread.
class FilePreferences final : public PreferenceStore {
 public:
  /// Reads the file. A missing file is an empty store.
  explicit FilePreferences(const QString& path);
  /// Tries once more to store values that could not be written.
  ~FilePreferences() override;
  Q_DISABLE_COPY(FilePreferences)

  /// The user's preference file: "app.velun.Velun/preferences.json" in the configuration folder.
  static QString userPath();

  std::optional<PreferenceValue> value(const QString& key) const override;
  void set(const QString& key, PreferenceValue value) override;

 private:
  void write();

  QString path_;
  QJsonObject values_;
  /// Whether `values_` contains those of the file.
  bool wasRead_ = false;
  /// Keys of values that could not be written yet.
  QSet<QString> unwritten_;
};

}  // namespace velun
