// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <cstdint>
#include <QString>
#include <QUrl>
#include <stop_token>

namespace velun {

/// How long a download is patient.
struct HttpPatience {
  /// No byte for so long counts as a dropped connection.
  std::chrono::milliseconds stall{20'000};
  /// Waited before a dropped connection is taken up again; doubled each time nothing arrived.
  std::chrono::milliseconds retry{1'000};
  /// Tries in a row in which nothing arrives before it is given up.
  int fruitlessTries = 4;
};

/// Brings what is at `address` completely into the file `partial`, going on from what is in it
/// already, over dropped connections. `bytes` is the size that it must have. Blocks: for a worker
/// thread. Throws `Failure` (what was received is kept, unless the server's file has another size)
/// or `Cancelled`.
void downloadFile(const QUrl& address, std::int64_t bytes, const QString& partial,
                  const HttpPatience& patience, const std::stop_token& stop);

}  // namespace velun
