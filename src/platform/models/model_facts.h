// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/models/catalogue_checker.h"
#include "platform/models/model.h"

namespace velun {

/// Reads what users are told about a model, whose id, kind and languages are known, from its entry
/// in the catalogue. Throws `Failure`.
void readModelFacts(const QJsonObject& entry, const CatalogueChecker& checker, Model& model);

}  // namespace velun
