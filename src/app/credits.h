// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/menubar/credit.h"

#include <vector>

namespace velun {

class ModelCatalogue;

/// The third-party software in the program and the models that it can download, with their
/// licences.
std::vector<Credit> credits(const ModelCatalogue& models);

}  // namespace velun
