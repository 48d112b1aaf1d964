// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/models/model_uses.h"

namespace velun {

std::shared_ptr<const void> ModelUses::use(const QString& id) {
  const std::lock_guard lock(mutex_);
  std::shared_ptr<const void> token = uses_.value(id).lock();
  if (!token) token = std::make_shared<char>();
  uses_[id] = token;
  return token;
}

bool ModelUses::isUsed(const QString& id) const {
  const std::lock_guard lock(mutex_);
  return !uses_.value(id).expired();
}

}  // namespace velun
