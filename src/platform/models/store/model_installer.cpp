// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/models/store/model_installer.h"

#include "platform/foundation/file_error.h"
#include "platform/models/model_address.h"
#include "platform/models/store/file_check.h"
#include "platform/models/store/model_lock.h"
#include "platform/models/store/model_store_failures.h"
#include "platform/models/store/move_into_place.h"
#include "platform/models/store/unpack.h"

#include <algorithm>
#include <cerrno>
#include <exception>
#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QStorageInfo>

namespace velun {

namespace {

/// Disk space that is left to other programs.
constexpr std::int64_t kReservedBytes = 50'000'000;

void makeFolder(const QString& path) {
  if (!QDir().mkpath(path)) throw model_failures::notSaved(path);
}

/// Whether the file that somebody has put in place can be used.
bool isUsable(const QString& path, std::int64_t bytes, const QByteArray& sha256,
              const std::stop_token& stop) {
  try {
    return isFile(path, bytes, sha256, stop);
  } catch (const FileError&) {
    return false;
  }
}

/// Whether the download is what the catalogue says. Throws `Failure` if that cannot be found out
/// now. Data on a broken part of the disk is damaged: every attempt would fail there.
bool isVerified(const ModelDownload& download, const QString& path, const std::stop_token& stop) {
  try {
    return isFile(path, download.bytes, download.sha256, stop);
  } catch (const FileError& error) {
    if (error.code().value() == EIO) return false;
    throw model_failures::unreadable(error.code().value());
  }
}

/// Moves what is at `path` to `name` in the folder `target`. A program that starts deletes the
/// folders of discarded files, perhaps between two steps of this.
void moveAside(const QString& path, const QString& target, const QString& name) {
  constexpr int kAttempts = 10;
  for (int attempt = 0; attempt < kAttempts && QFileInfo::exists(path); ++attempt) {
    if (QDir().mkpath(target) && QDir().rename(path, target + u'/' + name)) return;
  }
}

QByteArray hashOfUnpacked(const QString& path, const std::stop_token& stop) {
  try {
    return sha256OfFile(path, stop);
  } catch (const FileError& error) {
    throw model_failures::unreadable(error.code().value());
  }
}

bool canBeFetchedSingly(const ModelDownload& download) {
  return download.packing == ModelPacking::archive &&
         std::all_of(download.files.begin(), download.files.end(),
                     [](const ModelFile& file) { return !file.addresses.isEmpty(); });
}

/// The published hash of the file or, without one, that of an earlier check; empty if there is
/// none.
QByteArray knownHash(const VerifiedRecord& record, const ModelDownload& download,
                     const ModelFile& file) {
  if (!file.sha256.isEmpty()) return file.sha256;
  const VerifiedRecord::Entry* known = record.find(file.name);
  return known && known->download == download.sha256 ? known->sha256 : QByteArray();
}

std::int64_t sizeOf(const QString& path) {
  return QFileInfo(path).size();
}

std::int64_t sizeOfFolder(const QString& path) {
  std::int64_t bytes = 0;
  QDirIterator files(path, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
  while (files.hasNext()) bytes += sizeOf(files.next());
  return bytes;
}

}  // namespace

QString ModelInstaller::folder(const QString& id) const {
  return QDir(options_.root).filePath(id);
}

QString ModelInstaller::partialFolder(const Model& model) const {
  return QDir(options_.root).filePath(".downloads/" + model.id);
}

QString ModelInstaller::partialPath(const Model& model, const ModelDownload& download) const {
  return QDir(partialFolder(model)).filePath(download.fileName() + ".part");
}

bool ModelInstaller::isInstalled(const Model& model) const {
  const QString path = folder(model.id);
  return QFileInfo::exists(path) && VerifiedRecord::read(path).covers(model, path);
}

std::optional<ModelInstallation> ModelInstaller::installation(const Model& model) const {
  const QString path = folder(model.id);
  const QFileInfo file(QDir(path).filePath(VerifiedRecord::kFileName));
  if (!file.isFile()) return std::nullopt;
  const VerifiedRecord record = VerifiedRecord::read(path);
  const bool isCurrent = record.covers(model, path);
  if (!isCurrent && !record.hasOtherRevision(model, path)) return std::nullopt;
  return ModelInstallation{file.lastModified().date(), isCurrent};
}

void ModelInstaller::install(const Model& model, InstallProgress& progress,
                             const std::stop_token& stop) const {
  makeFolder(folder(model.id));
  makeFolder(partialFolder(model));
  const ModelLock lock(partialFolder(model), stop);
  if (isInstalled(model)) return;
  VerifiedRecord record = VerifiedRecord::read(folder(model.id));
  std::vector<const ModelDownload*> missing;
  for (const ModelDownload& download : model.downloads) {
    if (!usePlaced(model, download, record, stop)) missing.push_back(&download);
  }
  std::int64_t finished = model.downloadBytes();
  for (const ModelDownload* download : missing) finished -= download->bytes;
  progress.finishedBytes = finished;
  checkSpace(model, missing);
  record.write(folder(model.id));
  for (const ModelDownload* download : missing) {
    fetch(model, *download, record, progress, stop);
    finished += download->bytes;
    progress.receivedBytes = 0;
    progress.finishedBytes = finished;
    // Written now, in case the next download fails: for unpacked files without a published hash the
    // record is the only proof.
    record.write(folder(model.id));
  }
}

std::int64_t ModelInstaller::downloadedBytes(const Model& model) const {
  const VerifiedRecord record = VerifiedRecord::read(folder(model.id));
  std::int64_t bytes = 0;
  for (const ModelDownload& download : model.downloads) {
    const bool isVerified =
        std::ranges::all_of(download.files, [&record, &download](const ModelFile& file) {
          const VerifiedRecord::Entry* entry = record.find(file.name);
          return entry && entry->download == download.sha256;
        });
    bytes += isVerified ? download.bytes
                        : std::min(download.bytes, sizeOf(partialPath(model, download)));
  }
  return bytes;
}

std::int64_t ModelInstaller::diskBytes(const Model& model) const {
  return sizeOfFolder(folder(model.id)) + sizeOfFolder(partialFolder(model));
}

void ModelInstaller::setAside(const Model& model, const QString& target) const {
  moveAside(partialFolder(model), target, "partial");
  const QDir dir(folder(model.id));
  const VerifiedRecord record = VerifiedRecord::read(dir.path());
  // Also the files of another revision, which may have other names.
  QStringList names = record.names();
  names.removeIf([](const QString& name) { return name.contains(u'/'); });
  names += VerifiedRecord::kFileName;
  for (const ModelDownload& download : model.downloads) {
    if (sizeOf(dir.filePath(download.fileName())) == download.bytes) names += download.fileName();
  }
  for (const QString& name : names) moveAside(dir.filePath(name), target, name);
  QDir().rmdir(dir.path());
}

bool ModelInstaller::isPlaced(const Model& model) const {
  const QDir dir(folder(model.id));
  if (!dir.exists() || isInstalled(model)) return false;
  for (const ModelDownload& download : model.downloads) {
    bool areFilesThere = true;
    for (const ModelFile& file : download.files) {
      const QFileInfo info(dir.filePath(file.name));
      areFilesThere &= info.isFile() && (file.bytes == 0 || info.size() == file.bytes);
    }
    if (!areFilesThere && sizeOf(dir.filePath(download.fileName())) != download.bytes) return false;
  }
  return true;
}

bool ModelInstaller::installPlaced(const Model& model, const std::stop_token& stop) const {
  makeFolder(partialFolder(model));
  const ModelLock lock(partialFolder(model), stop);
  if (isInstalled(model)) return true;
  VerifiedRecord record = VerifiedRecord::read(folder(model.id));
  for (const ModelDownload& download : model.downloads) {
    if (!usePlaced(model, download, record, stop)) return false;
  }
  record.write(folder(model.id));
  return true;
}

bool ModelInstaller::isDamaged(const Model& model, const std::stop_token& stop) const {
  const QDir dir(folder(model.id));
  const VerifiedRecord record = VerifiedRecord::read(dir.path());
  for (const ModelDownload& download : model.downloads) {
    for (const ModelFile& file : download.files) {
      try {
        const QByteArray sha256 = knownHash(record, download, file);
        if (!isFile(dir.filePath(file.name), file.bytes, sha256, stop)) return true;
      } catch (const FileError& error) {
        if (error.code().value() == EIO) return true;
      }
    }
  }
  return false;
}

bool ModelInstaller::usePlaced(const Model& model, const ModelDownload& download,
                               VerifiedRecord& record, const std::stop_token& stop) const {
  const QDir dir(folder(model.id));
  bool areFilesRight = true;
  for (const ModelFile& file : download.files) {
    const QByteArray sha256 = knownHash(record, download, file);
    const QString path = dir.filePath(file.name);
    areFilesRight = areFilesRight && !sha256.isEmpty() && isUsable(path, file.bytes, sha256, stop);
    if (areFilesRight) record.note(dir.path(), file.name, sha256, download.sha256);
  }
  if (areFilesRight) return true;
  const QString packed = dir.filePath(download.fileName());
  if (download.packing == ModelPacking::none ||
      !isUsable(packed, download.bytes, download.sha256, stop)) {
    return false;
  }
  unpackVerified(model, download, packed, record, stop);
  return true;
}

void ModelInstaller::checkSpace(const Model& model,
                                const std::vector<const ModelDownload*>& missing) const {
  if (missing.empty()) return;
  std::int64_t needed = kReservedBytes;
  bool isPacked = false;
  for (const ModelDownload* download : missing) {
    needed += download->bytes - std::min(download->bytes, sizeOf(partialPath(model, *download)));
    isPacked = isPacked || download->packing != ModelPacking::none;
  }
  if (isPacked) needed += model.installedBytes;
  const std::int64_t free =
      options_.freeBytes ? options_.freeBytes() : QStorageInfo(folder(model.id)).bytesAvailable();
  const bool isKnown = free >= 0;
  if (isKnown && free < needed) throw model_failures::noSpace(needed, free);
}

void ModelInstaller::fetch(const Model& model, const ModelDownload& download,
                           VerifiedRecord& record, InstallProgress& progress,
                           const std::stop_token& stop) const {
  const QString partial = partialPath(model, download);
  try {
    fetchVerified(download, partial, progress, stop);
  } catch (const Cancelled&) {
    throw;
  } catch (const Failure&) {
    if (!canBeFetchedSingly(download)) throw;
    fetchSingly(model, download, record, progress, stop);
    QFile::remove(partial);
    return;
  }
  if (download.packing == ModelPacking::none) {
    place(model, download, partial, record);
  } else {
    try {
      unpackVerified(model, download, partial, record, stop);
    } catch (const DamagedModel&) {
      QFile::remove(partial);
      throw;
    }
    QFile::remove(partial);
  }
}

/// Moves a download that is not packed to its place.
void ModelInstaller::place(const Model& model, const ModelDownload& download,
                           const QString& partial, VerifiedRecord& record) const {
  const QString name = download.files.front().name;
  moveIntoPlace(partial, QDir(folder(model.id)).filePath(name));
  record.note(folder(model.id), name, download.files.front().sha256, download.sha256);
}

/// Downloads the files of an archive from their own addresses.
void ModelInstaller::fetchSingly(const Model& model, const ModelDownload& archive,
                                 VerifiedRecord& record, InstallProgress& progress,
                                 const std::stop_token& stop) const {
  for (const ModelFile& file : archive.files) {
    const ModelDownload single{file.addresses, file.bytes, file.sha256, ModelPacking::none, {file}};
    const QString partial = partialPath(model, single);
    fetchVerified(single, partial, progress, stop);
    place(model, {{}, 0, archive.sha256, ModelPacking::none, {file}}, partial, record);
    progress.receivedBytes = 0;
    progress.finishedBytes += file.bytes;
  }
}

/// Tries the addresses in order. Throws the failure of the first one, which matters most.
void ModelInstaller::fetchVerified(const ModelDownload& download, const QString& partial,
                                   InstallProgress& progress, const std::stop_token& stop) const {
  std::exception_ptr first;
  for (const QString& address : download.addresses) {
    try {
      fetchFrom(address, download, partial, progress, stop);
      return;
    } catch (const Cancelled&) {
      throw;
    } catch (const Failure&) {
      if (!first) first = std::current_exception();
    }
  }
  std::rethrow_exception(first);
}

void ModelInstaller::fetchFrom(const QString& address, const ModelDownload& download,
                               const QString& partial, InstallProgress& progress,
                               const std::stop_token& stop) const {
  const QUrl url = mirroredModelAddress(address, options_.mirror);
  const auto attempt = [&] {
    progress.step = InstallProgress::Step::downloading;
    downloadFile(url, download.bytes, partial, options_.retries, progress.receivedBytes, stop);
    progress.step = InstallProgress::Step::verifying;
    if (isVerified(download, partial, stop)) return;
    QFile::remove(partial);
    progress.receivedBytes = 0;
    throw model_failures::damaged();
  };
  const bool wasPartial = sizeOf(partial) > 0;
  try {
    attempt();
  } catch (const Failure&) {
    // The existing part may belong to another file: try once more from the beginning.
    if (!wasPartial || QFileInfo::exists(partial)) throw;
    attempt();
  }
}

void ModelInstaller::unpackVerified(const Model& model, const ModelDownload& download,
                                    const QString& packed, VerifiedRecord& record,
                                    const std::stop_token& stop) const {
  const QString unpacked = QDir(partialFolder(model)).filePath("unpacked");
  makeFolder(unpacked);
  unpack(download, packed, unpacked, stop);
  for (const ModelFile& file : download.files) {
    const QString path = QDir(unpacked).filePath(file.name);
    const QByteArray sha256 = hashOfUnpacked(path, stop);
    const bool hasSize = file.bytes == 0 || sizeOf(path) == file.bytes;
    if (!hasSize || (!file.sha256.isEmpty() && sha256 != file.sha256)) {
      QDir(unpacked).removeRecursively();
      throw model_failures::damaged();
    }
    moveIntoPlace(path, QDir(folder(model.id)).filePath(file.name));
    record.note(folder(model.id), file.name, sha256, download.sha256);
  }
  QDir(unpacked).removeRecursively();
}

}  // namespace velun
