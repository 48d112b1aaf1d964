// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/foundation/set_aside.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <QFile>
#include <sys/stat.h>
#include <unistd.h>

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

/// Gives the file a second name unless there is something under it; returns 0 or an errno value.
int addName(const QByteArray& from, const QByteArray& to) {
  return ::link(from.constData(), to.constData()) == 0 ? 0 : errno;
}

/// Calls `give(from, to)` with one name after the other until one is not in use.
template <class Give>
bool underFreshName(const QString& path, const QString& suffix, Give give) {
  const QByteArray from = QFile::encodeName(path);
  const QByteArray first = QFile::encodeName(path + suffix);
  int result = give(from, first);
  for (int i = 2; result == EEXIST; ++i) {
    result = give(from, first + '-' + QByteArray::number(i));
  }
  return result == 0;
}

}  // namespace

bool setAside(const QString& path, const QString& suffix) {
  return underFreshName(path, suffix, renameWithoutReplacing);
}

bool keepCopyAside(const QString& path, const QString& suffix) {
  return underFreshName(path, suffix, addName);
}

}  // namespace velun
