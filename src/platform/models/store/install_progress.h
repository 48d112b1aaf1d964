// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <cstdint>

namespace velun {

/// How far an installation is. Written by its thread, read by any.
struct InstallProgress {
  enum class Step { waiting, downloading, verifying };

  std::atomic<Step> step = Step::waiting;
  std::atomic<std::int64_t> finishedBytes = 0;  ///< of complete downloads
  std::atomic<std::int64_t> receivedBytes = 0;  ///< of the current download

  std::int64_t doneBytes() const { return finishedBytes + receivedBytes; }
};

}  // namespace velun
