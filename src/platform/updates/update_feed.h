// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QCoroTask>

namespace velun {

/// Where the list of releases comes from. Main thread.
class UpdateFeed {
 public:
  virtual ~UpdateFeed() = default;

  /// Fetches the feed. Throws `Failure` with a text to show.
  virtual QCoro::Task<QByteArray> fetch() = 0;
};

}  // namespace velun
