// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/file_sums.h"

#include "platform/foundation/file_descriptor.h"

#include <cerrno>
#include <fcntl.h>
#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <sys/stat.h>
#include <unistd.h>

namespace velun {

namespace {

const auto kListName = QStringLiteral("SHA256SUMS");
constexpr int kSumLength = 64;
constexpr qsizetype kBlockBytes = 256 << 10;
/// Between the sum and the path.
constexpr auto kSeparator = "  ";

/// Throws `DamagedFile` and `UnreadableFile` with `name`.
FileDescriptor openFile(const QString& path, const QString& name) {
  // Without O_NONBLOCK, opening a pipe without a writer would block.
  FileDescriptor file(
      ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (!file.isOpen() && (errno == ENOENT || errno == ENOTDIR)) throw DamagedFile(name);
  if (!file.isOpen()) throw UnreadableFile(name, errno);
  struct stat status {};
  if (::fstat(file.number(), &status) != 0) throw UnreadableFile(name, errno);
  if (!S_ISREG(status.st_mode)) throw DamagedFile(name);
  return file;
}

/// Of the open file. Throws `UnreadableFile` with `name`.
QByteArray sumOf(const FileDescriptor& file, const QString& name) {
  QCryptographicHash hash(QCryptographicHash::Sha256);
  QByteArray block(kBlockBytes, Qt::Uninitialized);
  while (true) {
    const ssize_t count =
        ::read(file.number(), block.data(), static_cast<std::size_t>(block.size()));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) throw UnreadableFile(name, errno);
    if (count == 0) return hash.result().toHex();
    hash.addData(QByteArrayView(block.constData(), count));
  }
}

void check(const QString& path, const QString& name, const QByteArray& sha256) {
  if (sumOf(openFile(path, name), name) != sha256) throw DamagedFile(name);
}

[[noreturn]] void refuseList(const QString& folder) {
  openFile(folder + u'/' + kListName, kListName);
  throw DamagedFile(kListName);
}

}  // namespace

void checkFile(const QString& path, const QByteArray& sha256) {
  check(path, QFileInfo(path).fileName(), sha256);
}

void checkFiles(const QString& folder, const QByteArray& sums) {
  for (const QByteArray& line : sums.trimmed().split('\n')) {
    const QString name = QString::fromUtf8(line.mid(kSumLength + 2));
    if (name.isEmpty() || line.mid(kSumLength, 2) != kSeparator) refuseList(folder);
    check(folder + u'/' + name, name, line.left(kSumLength));
  }
}

}  // namespace velun
