// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop/desktop_platform.h"
#include "platform/desktop/global_shortcuts.h"

#include <memory>

namespace velun {

class Clock;

/// Selects the window system that can keep the panel above other windows, unless the user has
/// selected one. Call it before the application object is created.
void preferWindowSystem();

/// Creates the services of the current desktop. `clock` must outlive the result.
std::unique_ptr<DesktopPlatform> makeDesktopPlatform(Clock& clock);

/// Creates the shortcuts of the current desktop. Call it once the application object exists.
std::unique_ptr<GlobalShortcuts> makeGlobalShortcuts();

}  // namespace velun
