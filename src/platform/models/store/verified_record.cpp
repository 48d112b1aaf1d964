// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/models/store/verified_record.h"

#include "platform/foundation/atomic_file.h"
#include "platform/foundation/file_error.h"
#include "platform/models/store/model_store_failures.h"

#include <algorithm>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>

namespace velun {

namespace {

QString recordPath(const QString& folder) {
  return QDir(folder).filePath(VerifiedRecord::kFileName);
}

std::int64_t modifiedOf(const QFileInfo& info) {
  return info.lastModified().toMSecsSinceEpoch();
}

}  // namespace

VerifiedRecord VerifiedRecord::read(const QString& folder) {
  VerifiedRecord record;
  QFile file(recordPath(folder));
  if (!file.open(QIODevice::ReadOnly)) return record;
  const QJsonArray files = QJsonDocument::fromJson(file.readAll()).object()["files"].toArray();
  for (const auto& value : files) {
    const QJsonObject object = value.toObject();
    record.entries_[object["name"].toString()] = {
        object["bytes"].toInteger(), object["modified"].toInteger(),
        object["sha256"].toString().toLatin1(), object["download"].toString().toLatin1()};
  }
  return record;
}

void VerifiedRecord::write(const QString& folder) const {
  QJsonArray files;
  for (auto entry = entries_.begin(); entry != entries_.end(); ++entry) {
    files.append(QJsonObject{{"name", entry.key()},
                             {"bytes", static_cast<double>(entry->bytes)},
                             {"modified", static_cast<double>(entry->modified)},
                             {"sha256", QString::fromLatin1(entry->sha256)},
                             {"download", QString::fromLatin1(entry->download)}});
  }
  const QByteArray json = QJsonDocument(QJsonObject{{"files", files}}).toJson();
  try {
    writeFileAtomically(recordPath(folder), json, true);
  } catch (const FileError& error) {
    throw model_failures::notWritten(error.code().value());
  }
}

void VerifiedRecord::doubt(const QString& folder) {
  VerifiedRecord record = read(folder);
  // The hashes stay: they are the only proof for files without published ones.
  for (Entry& entry : record.entries_) entry.modified = 0;
  record.write(folder);
}

void VerifiedRecord::note(const QString& folder, const QString& name, const QByteArray& sha256,
                          const QByteArray& download) {
  const QFileInfo info(QDir(folder).filePath(name));
  entries_[name] = {info.size(), modifiedOf(info), sha256, download};
}

const VerifiedRecord::Entry* VerifiedRecord::find(const QString& name) const {
  const auto found = entries_.constFind(name);
  return found == entries_.constEnd() ? nullptr : &*found;
}

bool VerifiedRecord::hasOtherRevision(const Model& model, const QString& folder) const {
  for (auto entry = entries_.begin(); entry != entries_.end(); ++entry) {
    const auto isItsDownload = [&entry](const ModelDownload& download) {
      return download.sha256 == entry->download;
    };
    if (std::any_of(model.downloads.begin(), model.downloads.end(), isItsDownload)) continue;
    const QFileInfo info(QDir(folder).filePath(entry.key()));
    if (info.isFile() && info.size() == entry->bytes && modifiedOf(info) == entry->modified) {
      return true;
    }
  }
  return false;
}

bool VerifiedRecord::covers(const Model& model, const QString& folder) const {
  const QDir dir(folder);
  for (const ModelDownload& download : model.downloads) {
    for (const ModelFile& file : download.files) {
      const Entry* entry = find(file.name);
      if (!entry || entry->download != download.sha256) return false;
      const QFileInfo info(dir.filePath(file.name));
      if (!info.isFile() || info.size() != entry->bytes || modifiedOf(info) != entry->modified) {
        return false;
      }
    }
  }
  return true;
}

}  // namespace velun
