// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop/desktop_platform.h"

#include <memory>

namespace velun {

class Clock;

/// Chooses the window system on which the panel can stand above other windows, where there is a
/// choice and the user has not made it. To be called before the application object is made.
void preferWindowSystem();

/// What the desktop that the program runs on can do. `clock` must outlive it.
std::unique_ptr<DesktopPlatform> makeDesktopPlatform(Clock& clock);

}  // namespace velun
