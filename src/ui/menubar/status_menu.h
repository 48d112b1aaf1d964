// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/menubar/menu_item.h"

#include <vector>

namespace velun {

class CaptionViewModel;

/// The status menu's items, as the model and its settings stand now.
std::vector<MenuItem> statusMenuItems(const CaptionViewModel& model, bool isPanelVisible);

}  // namespace velun
