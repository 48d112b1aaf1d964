// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/models/store/file_check.h"

#include "platform/foundation/file_descriptor.h"
#include "platform/foundation/file_error.h"
#include "platform/models/store/model_store_failures.h"

#include <cerrno>
#include <fcntl.h>
#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <unistd.h>

namespace velun {

QByteArray sha256OfFile(const QString& path, const std::stop_token& stop) {
  const auto refuse = [&path] {
    throw FileError(FileError::Operation::read, errno, path);
  };
  const FileDescriptor file(::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC));
  if (!file.isOpen()) refuse();
  QCryptographicHash hash(QCryptographicHash::Sha256);
  QByteArray block(1 << 20, Qt::Uninitialized);
  while (true) {
    if (stop.stop_requested()) throw Cancelled();
    const ssize_t count =
        ::read(file.number(), block.data(), static_cast<std::size_t>(block.size()));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) refuse();
    if (count == 0) return hash.result().toHex();
    hash.addData(QByteArrayView(block.constData(), count));
  }
}

bool isFile(const QString& path, std::int64_t bytes, const QByteArray& sha256,
            const std::stop_token& stop) {
  const QFileInfo info(path);
  if (!info.isFile() || (bytes > 0 && info.size() != bytes)) return false;
  return sha256.isEmpty() || sha256OfFile(path, stop) == sha256;
}

}  // namespace velun
