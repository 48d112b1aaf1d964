// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QCoroTask>

namespace velun {

/// The source of the list of releases. Main thread.
class UpdateFeed {
 public:
  virtual ~UpdateFeed() = default;

  /// Downloads the feed. Throws `Failure`.
  virtual QCoro::Task<QByteArray> fetch() = 0;
};

}  // namespace velun
