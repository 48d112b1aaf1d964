// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/memory_file.h"

#include <QFile>
#include <stdexcept>
#include <sys/mman.h>

namespace velun {

FileDescriptor memoryFile(const char* name, const QByteArray& content) {
  FileDescriptor descriptor(::memfd_create(name, MFD_CLOEXEC));
  QFile file;
  const bool isWritten =
      descriptor.isOpen() &&
      file.open(descriptor.number(), QIODevice::WriteOnly, QFile::DontCloseHandle) &&
      file.write(content) == content.size() && file.flush();
  if (!isWritten) throw std::runtime_error("there is not enough memory");
  return descriptor;
}

QString pathOfDescriptor(const FileDescriptor& descriptor) {
  return QStringLiteral("/proc/self/fd/%1").arg(descriptor.number());
}

}  // namespace velun
