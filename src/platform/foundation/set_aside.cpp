// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/foundation/set_aside.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <QFile>
#include <sys/stat.h>

namespace velun {

namespace {

/// Renames unless there is something under the new name; returns 0 or an errno value.
int renameWithoutReplacing(const QByteArray& from, const QByteArray& to) {
  if (::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE) == 0) {
    return 0;
  }
  if (errno != EINVAL) return errno;
  // Some file systems do not support the flag.
  struct stat status {};
  if (::lstat(to.constData(), &status) == 0) return EEXIST;
  return std::rename(from.constData(), to.constData()) == 0 ? 0 : errno;
}

}  // namespace

bool setAside(const QString& path, const QString& suffix) {
  const QByteArray from = QFile::encodeName(path);
  const QByteArray first = QFile::encodeName(path + suffix);
  int result = renameWithoutReplacing(from, first);
  for (int i = 2; result == EEXIST; ++i) {
    result = renameWithoutReplacing(from, first + '-' + QByteArray::number(i));
  }
  return result == 0;
}

}  // namespace velun
