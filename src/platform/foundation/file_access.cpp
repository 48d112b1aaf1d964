// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/foundation/file_access.h"

#include "platform/foundation/file_error.h"

#include <cerrno>
#include <fcntl.h>
#include <QFile>
#include <QFileInfo>
#include <sys/stat.h>

namespace velun {

namespace {

[[noreturn]] void refuseReading(int code, const QString& path) {
  throw FileError(FileError::Operation::read, code, path);
}

}  // namespace

FileDescriptor openRegularFile(const QString& path) {
  // Without O_NONBLOCK, opening a pipe without a writer would block.
  FileDescriptor file(
      ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  struct stat status {};
  if (!file.isOpen() || ::fstat(file.number(), &status) != 0 || S_ISREG(status.st_mode)) {
    return file;
  }
  file.close();
  errno = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
  return file;
}

QByteArray readWholeFile(const QString& path, qint64 limit, qsizetype padding) {
  const FileDescriptor file = openRegularFile(path);
  struct stat status {};
  if (!file.isOpen() || ::fstat(file.number(), &status) != 0) refuseReading(errno, path);
  if (status.st_size > limit) refuseReading(EFBIG, path);

  // Some file systems report no size, and the file may change: the end is where read() says so.
  constexpr qsizetype kStep = 64 << 10;
  QByteArray bytes;
  bytes.reserve(status.st_size + 1 + padding);
  bytes.resize(status.st_size + 1);
  qsizetype filled = 0;
  while (true) {
    if (filled > limit) refuseReading(EFBIG, path);
    if (filled == bytes.size()) bytes.resize(filled + kStep);
    const ssize_t count = ::read(file.number(), bytes.data() + filled,
                                 static_cast<std::size_t>(bytes.size() - filled));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) refuseReading(errno, path);
    if (count == 0) break;
    filled += count;
  }
  bytes.resize(filled);
  if (bytes.capacity() < filled + padding) bytes.reserve(filled + padding);
  return bytes;
}

QString canonicalPath(const QUrl& file) {
  const QFileInfo info(file.toLocalFile());
  if (info.exists()) return info.canonicalFilePath();
  const QString folder = QFileInfo(info.path()).canonicalFilePath();
  return folder.isEmpty() ? info.filePath() : folder + u'/' + info.fileName();
}

std::optional<Instant> creationTime(const QString& path) {
  struct statx status {};
  const QByteArray name = QFile::encodeName(path);
  if (::statx(AT_FDCWD, name.constData(), 0, STATX_BTIME, &status) != 0) return std::nullopt;
  if (!(status.stx_mask & STATX_BTIME)) return std::nullopt;
  return Instant(std::chrono::seconds(status.stx_btime.tv_sec) +
                 std::chrono::microseconds(status.stx_btime.tv_nsec / 1000));
}

void makePrivateFolder(const QString& path) {
  const QByteArray name = QFile::encodeName(path);
  if (::mkdir(name.constData(), S_IRWXU) == 0) return;
  int code = errno;
  const QString parent = QFileInfo(path).path();
  if (code == ENOENT && parent != path) {
    makePrivateFolder(parent);
    if (::mkdir(name.constData(), S_IRWXU) == 0) return;
    code = errno;
  }
  if (code == EEXIST && QFileInfo(path).isDir()) return;
  throw FileError(FileError::Operation::write, code == EEXIST ? ENOTDIR : code, path);
}

}  // namespace velun
