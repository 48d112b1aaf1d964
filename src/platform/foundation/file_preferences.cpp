// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/foundation/file_preferences.h"

#include "platform/foundation/atomic_file.h"
#include "platform/foundation/file_access.h"
#include "platform/foundation/file_error.h"

#include <cerrno>
#include <cstdio>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QStandardPaths>

namespace velun {

namespace {

/// Far above what preferences can reach; a larger file is something else.
constexpr qint64 kMaxFileBytes = 1 << 20;

enum class ReadResult { missing, unreadable, valid };

/// Reads an object with values of any kind: unknown ones are kept when another value is written.
ReadResult readFile(const QString& path, QJsonObject& values) {
  try {
    const QJsonDocument document = QJsonDocument::fromJson(readWholeFile(path, kMaxFileBytes));
    if (!document.isObject()) return ReadResult::unreadable;
    values = document.object();
    return ReadResult::valid;
  } catch (const FileError& error) {
    return error.code().value() == ENOENT ? ReadResult::missing : ReadResult::unreadable;
  }
}

/// Renames instead of copying, which also works for files that cannot be read.
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
  if (readFile(path_, values_) == ReadResult::unreadable) setAside(path_);
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
  // Without a session bus two instances can run at the same time: the values that the other one
  // has stored are kept, and only those set here are replaced.
  QJsonObject merged;
  const ReadResult result = readFile(path_, merged);
  if (result == ReadResult::unreadable) setAside(path_);
  if (result != ReadResult::valid) merged = values_;
  for (const QString& key : std::as_const(unwritten_)) merged.insert(key, values_.value(key));
  try {
    makePrivateFolder(QFileInfo(path_).path());
    writeFileAtomically(path_, QJsonDocument(merged).toJson(), true);
    unwritten_.clear();
  } catch (const FileError&) {
    // The values are kept in memory; the next set() tries again.
  }
}

}  // namespace velun
