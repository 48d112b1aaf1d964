// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace velun {

class LoginStart;
class ShortcutSet;

/// The settings that the desktop keeps, for the settings window. Each may be null.
struct DesktopSettings {
  LoginStart* login = nullptr;
  ShortcutSet* shortcuts = nullptr;
};

}  // namespace velun
