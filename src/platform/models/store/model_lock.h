// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLockFile>
#include <QString>
#include <stop_token>

namespace velun {

/// Holds a model against every other installer, in this program and in others. A lock whose holder
/// died is taken over.
class ModelLock {
 public:
  /// Waits for it. Throws `Cancelled`, or `Failure` when the folder cannot be written to.
  ModelLock(const QString& folder, const std::stop_token& stop);

 private:
  QLockFile file_;
};

}  // namespace velun
