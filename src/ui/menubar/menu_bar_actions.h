// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/menubar/app_command.h"

#include <functional>

namespace velun {

/// What the menus call back. Main thread.
struct MenuBarActions {
  std::function<void(AppCommand)> perform;
  std::function<CommandValidation(AppCommand)> validate;
  std::function<bool()> isPanelVisible;
};

}  // namespace velun
