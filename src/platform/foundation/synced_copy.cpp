// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/foundation/synced_copy.h"

#include "platform/foundation/file_error.h"
#include "platform/foundation/file_lock.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace velun {

namespace {

/// The synced copy.
constexpr auto kCopySuffix = ".velun-synced";
/// A version that is being synced.
constexpr auto kSyncingSuffix = ".velun-syncing";

QByteArray hiddenName(const QByteArray& file, const char* suffix) {
  const qsizetype slash = file.lastIndexOf('/');
  return file.left(slash + 1) + '.' + file.mid(slash + 1) + suffix;
}

/// For writing if possible: over NFS only such a descriptor can lock the file.
FileDescriptor openFile(const QByteArray& name) {
  constexpr int kFlags = O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
  FileDescriptor file(::open(name.constData(), O_RDWR | kFlags));
  if (file.isOpen()) return file;
  return FileDescriptor(::open(name.constData(), O_RDONLY | kFlags));
}

bool areSame(const FileDescriptor& a, const FileDescriptor& b) {
  struct stat first {};
  struct stat second {};
  return a.isOpen() && b.isOpen() && ::fstat(a.number(), &first) == 0 &&
         ::fstat(b.number(), &second) == 0 && first.st_dev == second.st_dev &&
         first.st_ino == second.st_ino;
}

bool isLockedElsewhere(const QByteArray& name) {
  const FileDescriptor file = openFile(name);
  return file.isOpen() && !lock(file);
}

bool isWithoutLinks(int code) {
  return code == EPERM || code == EOPNOTSUPP || code == ENOSYS || code == EMLINK ||
         code == EACCES || code == EXDEV;
}

/// The paths of the files that have a hidden name with `suffix` in the folder.
QStringList filesWithHiddenName(const QString& folder, const char* suffix) {
  const QString end = QLatin1String(suffix);
  const QStringList hidden = QDir(folder).entryList({QStringLiteral(".*") + end},
                                                    QDir::Files | QDir::Hidden | QDir::System);
  QStringList files;
  for (const QString& entry : hidden) {
    files.append(folder + QLatin1Char('/') + entry.mid(1, entry.size() - 1 - end.size()));
  }
  return files;
}

/// Gives the file a second name, over what an interrupted sync left there.
bool linkAgain(const QByteArray& file, const QByteArray& name) {
  if (::link(file.constData(), name.constData()) == 0) return true;
  if (errno != EEXIST) return false;
  ::unlink(name.constData());
  return ::link(file.constData(), name.constData()) == 0;
}

}  // namespace

void SyncedCopy::protect(const QString& path) {
  if (file_.isEmpty()) {
    file_ = QFile::encodeName(path);
  } else if (!isRemoved_) {
    return;
  }
  const std::unique_lock guard(mutex_, std::try_to_lock);
  if (!guard) return;  // an `update` is running; the next call protects the file if it has to
  isRemoved_ = false;
  const QByteArray copy = hiddenName(file_, kCopySuffix);
  if (::link(file_.constData(), copy.constData()) != 0 && errno == ENOENT) {
    // An empty copy: a power loss before the first sync may lose the file but not leave it empty.
    const FileDescriptor empty(
        ::open(copy.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
  }
  lock_ = openFile(copy);
  if (lock_.isOpen()) lock(lock_);
}

QString SyncedCopy::path() const {
  return QFile::decodeName(file_);
}

QString SyncedCopy::folder() const {
  return QFileInfo(path()).path();
}

void SyncedCopy::refuse(int code) const {
  throw FileError(FileError::Operation::write, code, path());
}

void SyncedCopy::update() {
  const std::lock_guard guard(mutex_);
  if (!isFinished_ && !file_.isEmpty()) sync();
}

void SyncedCopy::finish() {
  const std::lock_guard guard(mutex_);
  if (std::exchange(isFinished_, true) || file_.isEmpty()) return;
  try {
    sync();
    ::unlink(hiddenName(file_, kCopySuffix).constData());
  } catch (const FileError&) {
    // The copy may be needed after a power loss.
  }
}

void SyncedCopy::sync() {
  const QByteArray syncing = hiddenName(file_, kSyncingSuffix);
  if (linkAgain(file_, syncing)) {
    syncLinked(syncing);
  } else if (errno == ENOENT) {
    // The file was deleted; nothing of it stays.
    ::unlink(hiddenName(file_, kCopySuffix).constData());
    lock_ = {};
    isRemoved_ = true;
    return;
  } else if (isWithoutLinks(errno)) {
    syncOnly();
  } else {
    refuse(errno);
  }
  // Some file systems cannot sync a folder.
  if (!syncFolder(folder()) && errno != EINVAL) refuse(errno);
}

void SyncedCopy::syncLinked(const QByteArray& name) {
  FileDescriptor version = openFile(name);
  if (!version.isOpen() && errno == ELOOP) {
    // The user has put a symbolic link to another folder in place of the file.
    ::unlink(name.constData());
    return syncOnly();
  }
  // `lock_` holds the lock if this is the synced version already.
  const bool isNew = version.isOpen() && !areSame(version, lock_);
  // The writer may hold it until its call returns. The file does without another program's.
  if (isNew) waitForLock(version);
  const QByteArray copy = hiddenName(file_, kCopySuffix);
  if (!version.isOpen() || ::fdatasync(version.number()) != 0 ||
      std::rename(name.constData(), copy.constData()) != 0) {
    const int code = errno;
    ::unlink(name.constData());
    refuse(code);
  }
  // Renaming does nothing if both names lead to the same version already.
  ::unlink(name.constData());
  if (isNew) lock_ = std::move(version);
}

void SyncedCopy::syncOnly() {
  const FileDescriptor file(::open(file_.constData(), O_RDONLY | O_CLOEXEC));
  if (!file.isOpen() || ::fdatasync(file.number()) != 0) refuse(errno);
  ::unlink(hiddenName(file_, kCopySuffix).constData());
}

std::vector<FoundCopy> findSyncedCopies(const QString& folder) {
  for (const QString& file : filesWithHiddenName(folder, kSyncingSuffix)) {
    const QByteArray name = QFile::encodeName(file);
    if (isLockedElsewhere(hiddenName(name, kCopySuffix))) continue;
    ::unlink(hiddenName(name, kSyncingSuffix).constData());
  }
  std::vector<FoundCopy> found;
  for (const QString& file : filesWithHiddenName(folder, kCopySuffix)) {
    const QByteArray copy = hiddenName(QFile::encodeName(file), kCopySuffix);
    if (!isLockedElsewhere(copy)) found.push_back({file, QFile::decodeName(copy)});
  }
  return found;
}

bool syncFolder(const QString& folder) {
  const FileDescriptor opened(
      ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  return opened.isOpen() && ::fsync(opened.number()) == 0;
}

}  // namespace velun
