// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/models/store/move_into_place.h"

#include "platform/models/store/model_store_failures.h"

#include <cerrno>
#include <cstdio>
#include <QFile>
#include <unistd.h>

namespace velun {

void moveIntoPlace(const QString& from, const QString& to) {
  QFile file(from);
  if (!file.open(QIODevice::ReadWrite)) throw model_failures::notWritten(file);
  if (::fsync(file.handle()) != 0) throw model_failures::notWritten(errno);
  file.close();
  if (std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) != 0) {
    throw model_failures::notWritten(errno);
  }
}

}  // namespace velun
