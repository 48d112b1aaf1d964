// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace velun {

class AudioPlatform;
class CaptionFile;
class LibrarySettings;
class LoginStart;
class SharingSettings;
class ShortcutSet;

/// What the settings window shows and changes of the system. Each may be null.
struct DesktopSettings {
  /// The devices that can be captioned.
  AudioPlatform* audio = nullptr;
  LoginStart* login = nullptr;
  ShortcutSet* shortcuts = nullptr;
  /// What other programs get of the captions.
  SharingSettings* sharing = nullptr;
  const CaptionFile* captionFile = nullptr;
  /// How saved sessions are named.
  LibrarySettings* library = nullptr;
};

}  // namespace velun
