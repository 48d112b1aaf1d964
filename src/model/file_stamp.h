// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/clock.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <QString>

namespace velun {

/// What the file system tells of a version of a file.
struct FileStamp {
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  std::int64_t size = 0;
  /// Since 1970.
  std::chrono::nanoseconds modified{0};
  std::chrono::nanoseconds changed{0};

  bool operator==(const FileStamp&) const = default;
};

/// The stamp of a file; nullopt if it is not there, or if it was changed so shortly before `now`
/// that another change could leave the same stamp. Any thread.
std::optional<FileStamp> stampOf(const QString& path, Instant now);

}  // namespace velun
