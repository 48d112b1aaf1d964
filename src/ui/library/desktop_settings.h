// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace velun {

class AudioPlatform;
class LoginStart;
class ShortcutSet;

/// What the settings window shows and changes of the system. Each may be null.
struct DesktopSettings {
  /// The devices that can be captioned.
  AudioPlatform* audio = nullptr;
  LoginStart* login = nullptr;
  ShortcutSet* shortcuts = nullptr;
};

}  // namespace velun
