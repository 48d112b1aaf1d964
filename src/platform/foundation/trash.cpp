// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/foundation/trash.h"

#include <cerrno>
#include <cstring>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

namespace velun {

std::optional<QString> moveToTrash(const QString& path) {
  // Without the data folder Qt would move the file into the current directory and report success.
  const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
  if (data.isEmpty() || !QDir().mkpath(data) || !QFileInfo(data).isWritable()) {
    return QString::fromLocal8Bit(std::strerror(EACCES));
  }
  QFile file(path);
  if (!file.exists()) return QString::fromLocal8Bit(std::strerror(ENOENT));
  if (file.moveToTrash()) return std::nullopt;
  return file.errorString();
}

}  // namespace velun
