// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/models/model_catalogue.h"
#include "platform/models/model_store.h"

#include <algorithm>

namespace velun {

/// The first model of a kind that is installed; null if none is.
inline const Model* installedModel(const ModelCatalogue& catalogue, const ModelStore& store,
                                   ModelKind kind) {
  const auto found = std::ranges::find_if(catalogue.models(), [&](const Model& model) {
    return model.kind == kind && store.isInstalled(model);
  });
  return found == catalogue.models().end() ? nullptr : &*found;
}

}  // namespace velun
