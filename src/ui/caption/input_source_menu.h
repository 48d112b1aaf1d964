// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/audio_input.h"

#include <QString>

namespace velun {

class AppSettings;
class CaptionMenu;

/// The symbol of an input.
QString symbolOf(AudioInput input);

/// Fills the menu with the choice of the input.
void fillInputSourceMenu(CaptionMenu& menu, AppSettings& settings);

}  // namespace velun
