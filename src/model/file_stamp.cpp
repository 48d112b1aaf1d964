// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/file_stamp.h"

#include <QFile>
#include <sys/stat.h>

namespace velun {

namespace {

/// Longer than the steps in which file systems count time; FAT counts two seconds.
constexpr std::chrono::seconds kMaxStep(3);

std::chrono::nanoseconds sinceEpoch(const timespec& time) {
  return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

}  // namespace

std::optional<FileStamp> stampOf(const QString& path, Instant now) {
  struct stat status {};
  if (::stat(QFile::encodeName(path).constData(), &status) != 0) return std::nullopt;
  const FileStamp stamp{.device = status.st_dev,
                        .inode = status.st_ino,
                        .size = status.st_size,
                        .modified = sinceEpoch(status.st_mtim),
                        .changed = sinceEpoch(status.st_ctim)};
  const std::chrono::nanoseconds latest = now.time_since_epoch() - kMaxStep;
  const bool isSettled = stamp.changed < latest && stamp.modified < latest;
  return isSettled ? std::optional(stamp) : std::nullopt;
}

}  // namespace velun
