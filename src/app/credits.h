// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/menubar/credit.h"

#include <vector>

namespace velun {

class ModelCatalogue;

/// The software that the program is made with, and the models that it offers, with the licences
/// that their makers state.
std::vector<Credit> credits(const ModelCatalogue& models);

}  // namespace velun
