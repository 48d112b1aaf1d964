// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace velun {

class CaptionMenu;
class CaptionViewModel;

/// Fills the menu with the translation settings: on or off, languages, content.
void fillTranslationMenu(CaptionMenu& menu, const CaptionViewModel& model);

}  // namespace velun
