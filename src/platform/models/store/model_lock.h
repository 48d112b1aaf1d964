// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLockFile>
#include <QString>
#include <stop_token>

namespace velun {

/// Locks a model against other installers, also of other processes. The lock of a process that has
/// died is replaced.
class ModelLock {
 public:
  /// Waits for the lock. Throws `Cancelled`, or `Failure` if the folder is not writable.
  ModelLock(const QString& folder, const std::stop_token& stop);

 private:
  QLockFile file_;
};

}  // namespace velun
