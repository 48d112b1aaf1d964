// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/library/settings_notes.h"

namespace velun {

class DesktopPlatform;
class ModelStore;
class TranslationPlatform;

/// What the settings window says about this machine. All three must outlive the notes.
SettingsNotes settingsNotes(const DesktopPlatform& desktop, const TranslationPlatform& translation,
                            const ModelStore& models);

}  // namespace velun
