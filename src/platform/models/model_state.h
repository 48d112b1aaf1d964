// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <QString>

namespace velun {

/// How far the download of a model is.
struct ModelState {
  enum class Stage {
    absent,   ///< nothing of it is on the disk
    waiting,  ///< for another process, or for the previous attempt to end
    downloading,
    paused,     ///< the downloaded part is on the disk, perhaps since an earlier run
    verifying,  ///< hashing or unpacking
    failed,     ///< the downloaded part, if any, is kept
    installed,
  };

  Stage stage = Stage::absent;
  std::int64_t doneBytes = 0;   ///< how much of `totalBytes` is on the disk
  std::int64_t totalBytes = 0;  ///< the size of the downloads
  double bytesPerSecond = 0;    ///< average over some seconds; 0 while unknown
  std::optional<int> secondsLeft;
  QString failure;  ///< what happened and what to do, localized when it happened

  /// Whether an installation is running.
  bool isBusy() const {
    return stage == Stage::waiting || stage == Stage::downloading || stage == Stage::verifying;
  }

  bool operator==(const ModelState&) const = default;
};

}  // namespace velun
