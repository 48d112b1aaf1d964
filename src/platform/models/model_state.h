// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <QString>
#include <vector>

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
  QString failure;  ///< what happened and what to do, in the interface language

  /// Whether an installation is running.
  bool isBusy() const {
    return stage == Stage::waiting || stage == Stage::downloading || stage == Stage::verifying;
  }

  bool operator==(const ModelState&) const = default;
};

/// The state of several downloads that the user sees as one. A failure comes first, then what is
/// still going on; only if all are installed, the result is. `states` must not be empty.
ModelState combined(const std::vector<ModelState>& states);

}  // namespace velun
