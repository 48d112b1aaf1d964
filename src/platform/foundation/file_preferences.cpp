// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/foundation/file_preferences.h"

#include "platform/foundation/atomic_file.h"
#include "platform/foundation/file_access.h"
#include "platform/foundation/file_error.h"
#include "platform/foundation/set_aside.h"

#include <cerrno>
#include <QFileInfo>
#include <QJsonDocument>
#include <QStandardPaths>
#include <utility>

namespace velun {

namespace {

/// Far above what preferences can reach; a larger file is something else.
constexpr qint64 kMaxFileBytes = 1 << 20;

/// What is under the name of the file. `unreadable` may be `valid` at the next attempt.
enum class Found { missing, unreadable, damaged, valid };

Found errorToFound(int code) {
  switch (code) {
    case ENOENT:
      return Found::missing;
    case EISDIR:
    case EINVAL:
    case EFBIG:
      return Found::damaged;  // something else than a file of preferences
    default:
      return Found::unreadable;
  }
}

/// Reads an object with values of any kind: unknown ones are kept when another value is written.
Found readFile(const QString& path, QJsonObject& values) {
  try {
    const QJsonDocument document = QJsonDocument::fromJson(readWholeFile(path, kMaxFileBytes));
    if (!document.isObject()) return Found::damaged;
    values = document.object();
    return Found::valid;
  } catch (const FileError& error) {
    return errorToFound(error.code().value());
  }
}

bool setDamagedAside(const QString& path) {
  return setAside(path, QStringLiteral(".damaged"));
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
  const Found found = readFile(path_, values_);
  wasRead_ = found != Found::unreadable;
  if (found == Found::damaged) setDamagedAside(path_);
}

FilePreferences::~FilePreferences() {
  if (!unwritten_.isEmpty()) write();
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
  const Found found = readFile(path_, merged);
  if (found == Found::unreadable) return;
  if (found == Found::damaged && !setDamagedAside(path_)) return;
  if (found != Found::valid) merged = values_;
  for (const QString& key : std::as_const(unwritten_)) merged.insert(key, values_.value(key));
  if (!std::exchange(wasRead_, true)) values_ = merged;
  try {
    makePrivateFolder(QFileInfo(path_).path());
    writeFileAtomically(path_, QJsonDocument(merged).toJson(), true);
    unwritten_.clear();
  } catch (const FileError&) {
    // The values are kept in memory for the next attempt.
  }
}

}  // namespace velun
