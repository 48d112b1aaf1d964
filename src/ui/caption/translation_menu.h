// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace velun {

class CaptionMenu;
class CaptionViewModel;

/// Fills the menu with everything that concerns translation.
void fillTranslationMenu(CaptionMenu& menu, const CaptionViewModel& model);

}  // namespace velun
