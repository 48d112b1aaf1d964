// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <mutex>
#include <QHash>
#include <QString>

namespace velun {

/// Which models are in use. Any thread.
class ModelUses {
 public:
  /// The model with this id is used until the last copy of the result is destroyed.
  [[nodiscard]] std::shared_ptr<const void> use(const QString& id);
  bool isUsed(const QString& id) const;

 private:
  mutable std::mutex mutex_;
  QHash<QString, std::weak_ptr<const void>> uses_;  // guarded by mutex_
};

}  // namespace velun
