// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/library/settings_notes.h"

namespace velun {

class DesktopPlatform;
class ModelStore;
class TranslationPlatform;

/// The settings window's notes about this desktop and its downloads. All arguments must outlive
/// them.
SettingsNotes settingsNotes(const DesktopPlatform& desktop, const TranslationPlatform& translation,
                            const ModelStore& models);

}  // namespace velun
