// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/foundation/atomic_file.h"

#include "platform/foundation/file_descriptor.h"
#include "platform/foundation/file_error.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <sys/file.h>
#include <sys/stat.h>

namespace velun {

namespace {

constexpr auto kSuffix = ".velun-part";

/// Longer names of temporary files are shortened. The shortest limit of a file system in common use
/// is the one of encrypted home folders, 143 bytes.
constexpr std::size_t kMaxPartNameBytes = 100;

/// Follows symbolic links, also those to files that do not exist yet.
std::filesystem::path followLinks(const QString& path) {
  constexpr int kMaxLinks = 40;  // that of Linux
  std::filesystem::path target(QFile::encodeName(path).toStdString());
  for (int i = 0; i < kMaxLinks; ++i) {
    std::error_code error;
    const std::filesystem::path next = std::filesystem::read_symlink(target, error);
    if (error) return target;
    target = target.parent_path() / next;
  }
  throw FileError(FileError::Operation::write, ELOOP, path);
}

/// The hidden name under which a file is prepared. There is one per file, so that the next writer
/// reuses what a killed writer left. A long name is replaced by its hash, so that the file system
/// accepts the temporary name whenever it accepts the name.
std::filesystem::path partPath(const std::filesystem::path& target) {
  const std::string name = target.filename().string();
  std::string part = "." + name + kSuffix;
  if (part.size() > kMaxPartNameBytes) {
    const QByteArray hash =
        QCryptographicHash::hash(QByteArray::fromStdString(name), QCryptographicHash::Sha1);
    part = "." + hash.toHex().toStdString() + kSuffix;
  }
  return target.parent_path() / part;
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
void flushFolder(const std::filesystem::path& path) {
  const FileDescriptor folder(
      ::open(path.empty() ? "." : path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (folder.isOpen()) ::fsync(folder.number());
}

}  // namespace

void writeFileAtomically(const QString& path, const QByteArray& bytes, bool flush) {
  const std::filesystem::path target = followLinks(path);
  const QByteArray targetName = QByteArray::fromStdString(target.string());
  const QByteArray part = QByteArray::fromStdString(partPath(target).string());

  FileDescriptor file = openPart(part);
  if (!file.isOpen()) throw FileError(FileError::Operation::write, errno, path);
  if (!replaceWhole(file, part, targetName, bytes, flush)) {
    const int code = errno;
    ::unlink(part.constData());
    throw FileError(FileError::Operation::write, code, path);
  }
  if (flush) flushFolder(target.parent_path());
}

void removeAbandonedWrites(const QString& folder) {
  const QStringList found = QDir(folder).entryList({QStringLiteral(".*") + QLatin1String(kSuffix)},
                                                   QDir::Files | QDir::Hidden | QDir::System);
  for (const QString& entry : found) {
    const QByteArray name = QFile::encodeName(folder + QLatin1Char('/') + entry);
    // Without O_NONBLOCK, opening a pipe without a reader would block.
    const FileDescriptor part(
        ::open(name.constData(), O_WRONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    if (!part.isOpen() || ::flock(part.number(), LOCK_EX | LOCK_NB) != 0) continue;
    if (isStillNamed(part, name)) ::unlink(name.constData());
  }
}

}  // namespace velun
