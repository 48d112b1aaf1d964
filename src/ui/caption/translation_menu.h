// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

namespace velun {

class CaptionMenu;
class CaptionViewModel;

/// Opens the choosers of languages.
struct LanguageChoosers {
  std::function<void()> openInput;
  std::function<void()> openTranslation;
};

/// Fills the menu with the translation settings: on or off, languages, content.
void fillTranslationMenu(CaptionMenu& menu, const CaptionViewModel& model,
                         const LanguageChoosers& choosers);

}  // namespace velun
