// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/foundation/atomic_file.h"

#include "platform/foundation/file_descriptor.h"
#include "platform/foundation/file_error.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <sys/file.h>
#include <sys/stat.h>

namespace velun {

namespace {

constexpr auto kSuffix = ".velun-part";

/// The hidden name under which a file is prepared. There is one per file, so that the next writer
/// reuses what a killed writer left.
QString partName(const QString& path) {
  const QFileInfo info(path);
  return info.path() + QStringLiteral("/.") + info.fileName() + QLatin1String(kSuffix);
}

bool isStillNamed(const FileDescriptor& file, const QByteArray& name) {
  struct stat opened {};
  struct stat named {};
  return ::fstat(file.number(), &opened) == 0 && ::lstat(name.constData(), &named) == 0 &&
         opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
}

/// Opens and locks the part file. If the previous holder of the lock has renamed or removed the
/// file meanwhile, opens another one.
FileDescriptor openPart(const QByteArray& name) {
  while (true) {
    FileDescriptor part(
        ::open(name.constData(), O_WRONLY | O_CREAT | O_CLOEXEC | O_NOFOLLOW, S_IRUSR | S_IWUSR));
    if (!part.isOpen()) return part;
    // Other errors are ignored: some file systems have no locks.
    while (::flock(part.number(), LOCK_EX) != 0 && errno == EINTR) {
    }
    if (isStillNamed(part, name)) return part;
  }
}

bool writeAll(const FileDescriptor& file, const QByteArray& bytes) {
  qsizetype written = 0;
  while (written < bytes.size()) {
    const ssize_t count = ::write(file.number(), bytes.constData() + written,
                                  static_cast<std::size_t>(bytes.size() - written));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return false;
    written += count;
  }
  return true;
}

bool keepMode(const FileDescriptor& part, const QByteArray& target) {
  struct stat status {};
  if (::stat(target.constData(), &status) != 0) return true;
  return ::fchmod(part.number(), status.st_mode & 07777) == 0;
}

bool replaceWhole(FileDescriptor& part, const QByteArray& partName, const QByteArray& target,
                  const QByteArray& bytes, bool flush) {
  return ::ftruncate(part.number(), 0) == 0 && writeAll(part, bytes) && keepMode(part, target) &&
         (!flush || ::fdatasync(part.number()) == 0) &&
         std::rename(partName.constData(), target.constData()) == 0;
}

/// Makes the renaming durable. The file is in place already, so errors are ignored.
void flushFolder(const QString& path) {
  const FileDescriptor folder(
      ::open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (folder.isOpen()) ::fsync(folder.number());
}

}  // namespace

void writeFileAtomically(const QString& path, const QByteArray& bytes, bool flush) {
  const QFileInfo info(path);
  const QString followed = info.isSymLink() ? info.canonicalFilePath() : QString();
  const QString target = followed.isEmpty() ? path : followed;
  const QByteArray targetName = QFile::encodeName(target);
  const QByteArray part = QFile::encodeName(partName(target));

  FileDescriptor file = openPart(part);
  if (!file.isOpen()) throw FileError(FileError::Operation::write, errno, path);
  if (!replaceWhole(file, part, targetName, bytes, flush)) {
    const int code = errno;
    ::unlink(part.constData());
    throw FileError(FileError::Operation::write, code, path);
  }
  if (flush) flushFolder(QFileInfo(target).path());
}

void removeAbandonedWrites(const QString& folder) {
  const QStringList found = QDir(folder).entryList({QStringLiteral(".*") + QLatin1String(kSuffix)},
                                                   QDir::Files | QDir::Hidden | QDir::System);
  for (const QString& entry : found) {
    const QByteArray name = QFile::encodeName(folder + QLatin1Char('/') + entry);
    const FileDescriptor part(::open(name.constData(), O_WRONLY | O_CLOEXEC | O_NOFOLLOW));
    if (!part.isOpen() || ::flock(part.number(), LOCK_EX | LOCK_NB) != 0) continue;
    if (isStillNamed(part, name)) ::unlink(name.constData());
  }
}

}  // namespace velun
