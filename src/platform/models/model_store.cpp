// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/models/model_store.h"

namespace velun {

std::shared_ptr<const void> ModelStore::use(const Model& model) {
  std::shared_ptr<const void> token = uses_.value(model.id).lock();
  if (!token) token = std::make_shared<char>();
  uses_[model.id] = token;
  return token;
}

bool ModelStore::isUsed(const Model& model) const {
  return !uses_.value(model.id).expired();
}

}  // namespace velun
