// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/models/model.h"
#include "platform/translation/language_pair.h"

#include <vector>

namespace velun {

/// The models that can translate in one direction.
struct PairModels {
  LanguagePair pair;
  std::vector<Model> models;  ///< not empty; first the one that should be used on this computer
};

}  // namespace velun
