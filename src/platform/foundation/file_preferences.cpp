// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/foundation/file_preferences.h"

#include "platform/foundation/atomic_file.h"
#include "platform/foundation/file_access.h"
#include "platform/foundation/file_error.h"
#include "platform/foundation/preference_document.h"

#include <cerrno>
#include <cstdio>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QStandardPaths>

namespace velun {

namespace {

/// Far above what preferences can reach; a larger file is something else.
constexpr qint64 kMostBytes = 1 << 20;

enum class Found { missing, unreadable, good };

Found readFile(const QString& path, QJsonObject& values) {
  try {
    const std::optional<QJsonObject> read = readPreferenceDocument(readWholeFile(path, kMostBytes));
    if (!read) return Found::unreadable;
    values = *read;
    return Found::good;
  } catch (const FileError& error) {
    return error.code().value() == ENOENT ? Found::missing : Found::unreadable;
  }
}

/// Renamed rather than copied: it works on files that cannot be read.
void setAside(const QString& path) {
  std::rename(QFile::encodeName(path).constData(),
              QFile::encodeName(path + QStringLiteral(".damaged")).constData());
}

QJsonValue toJson(const PreferenceValue& value) {
  return std::visit([](const auto& typed) { return QJsonValue(typed); }, value);
}

std::optional<PreferenceValue> fromJson(const QJsonValue& value) {
  if (value.isBool()) return value.toBool();
  if (value.isDouble()) return value.toDouble();
  if (value.isString()) return value.toString();
  return std::nullopt;
}

}  // namespace

FilePreferences::FilePreferences(const QString& path) : path_(path) {
  if (readFile(path_, values_) == Found::unreadable) setAside(path_);
}

QString FilePreferences::userPath() {
  return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
         QStringLiteral("/app.velun.Velun/preferences.json");
}

std::optional<PreferenceValue> FilePreferences::value(const QString& key) const {
  return fromJson(values_.value(key));
}

void FilePreferences::set(const QString& key, PreferenceValue value) {
  values_.insert(key, toJson(value));
  unwritten_.insert(key);
  write();
}

void FilePreferences::write() {
  // Where there is no session bus, two programs can run at a time: what the other one stored
  // since is kept, and only the values set here are put into it.
  QJsonObject merged;
  const Found found = readFile(path_, merged);
  if (found == Found::unreadable) setAside(path_);
  if (found != Found::good) merged = values_;
  for (const QString& key : std::as_const(unwritten_)) merged.insert(key, values_.value(key));
  try {
    makePrivateFolder(QFileInfo(path_).path());
    writeFileAtomically(path_, QJsonDocument(merged).toJson(), true);
    unwritten_.clear();
  } catch (const FileError&) {
    // The value holds for this run; the next set tries again.
  }
}

}  // namespace velun
