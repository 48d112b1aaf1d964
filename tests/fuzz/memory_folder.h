// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "require.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace velun::fuzz {

/// A temporary folder, in memory if the system has a memory file system.
inline QString memoryFolder() {
  static const QTemporaryDir folder((QFileInfo(QStringLiteral("/dev/shm")).isWritable()
                                         ? QStringLiteral("/dev/shm")
                                         : QDir::tempPath()) +
                                    "/velun-fuzz-XXXXXX");
  require(folder.isValid(), "the folder can be made");
  return folder.path();
}

/// Replaces the contents of a file.
inline void put(const QString& path, const char* bytes, std::size_t size) {
  QFile file(path);
  require(file.open(QIODevice::WriteOnly), "the file can be written");
  file.write(bytes, static_cast<qint64>(size));
}

}  // namespace velun::fuzz
