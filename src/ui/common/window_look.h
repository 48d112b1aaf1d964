// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop/color_scheme.h"
#include "ui/common/access_style.h"

#include <optional>
#include <QPalette>
#include <QString>

namespace velun {

/// Black on white, or white on black, with a strong colour for selections. Text at 0.7 opacity
/// still has a contrast of 7:1.
QPalette highContrastPalette(bool dark);

/// Calm colours for a desktop whose own palette is light although the user prefers dark windows, or
/// the other way round. Text has a contrast of 7:1.
QPalette schemePalette(bool dark);

/// The look of all windows: the desktop's own style and colours, adapted to the user's preferences.
/// The caption panel has its own colours. Main thread.
class WindowLook final {
 public:
  /// Applies to all windows at once. `highContrast` means strong colours and outlines,
  /// ColorScheme::dark soft ones where the desktop's own colours are light, `reducedMotion` means
  /// no animations. With ColorScheme::any the desktop's palette decides between light and dark.
  void set(ColorScheme scheme, bool highContrast, bool reducedMotion);

 private:
  void applyPalette();
  AccessStyle::Outlines outlines() const;
  void applyStyle();

  ColorScheme scheme_ = ColorScheme::any;
  bool isSet_ = false;
  bool highContrast_ = false;
  bool reducedMotion_ = false;
  bool hasOwnPalette_ = false;
  // Of the style in use.
  std::optional<AccessStyle::Outlines> styledOutlines_;
  bool styledMotion_ = false;
  // The desktop's style while it is replaced; otherwise empty.
  QString styleName_;
};

}  // namespace velun
