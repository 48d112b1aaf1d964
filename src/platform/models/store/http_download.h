// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <QString>
#include <QUrl>
#include <stop_token>

namespace velun {

/// Timeouts and retries of a download.
struct HttpRetryPolicy {
  /// A connection without data for so long counts as lost.
  std::chrono::milliseconds stallTimeout{20'000};
  /// The delay before the next attempt; doubled after each attempt without progress.
  std::chrono::milliseconds retryDelay{1'000};
  /// Consecutive attempts without any data before the download fails.
  int maxAttemptsWithoutProgress = 4;
};

/// Downloads `address`, whose size must be `bytes`, into the file `partial`. Continues after what
/// the file already contains, and after lost connections. Blocks; not on the main thread. Throws
/// `Failure` or `Cancelled`; the received data is kept, unless the server's file has another size.
/// `received` is set to the size of `partial` whenever that changes.
void downloadFile(const QUrl& address, std::int64_t bytes, const QString& partial,
                  const HttpRetryPolicy& policy, std::atomic<std::int64_t>& received,
                  const std::stop_token& stop);

}  // namespace velun
