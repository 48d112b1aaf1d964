// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPalette>
#include <QString>

namespace velun {

/// Black on white, or white on black where the desktop's palette is dark, with a strong colour for
/// selections. Text at 0.7 opacity still has a contrast of 7:1.
QPalette highContrastPalette(const QPalette& desktops);

/// The look of all windows: the desktop's own style, adapted to accessibility preferences. The
/// caption panel has its own colours. Main thread.
class WindowLook final {
 public:
  /// Applies to all windows at once. `highContrast` means strong colours and outlines,
  /// `reducedMotion` means no animations.
  void set(bool highContrast, bool reducedMotion);

 private:
  bool highContrast_ = false;
  bool reducedMotion_ = false;
  // The desktop's style while it is replaced; otherwise empty.
  QString styleName_;
};

}  // namespace velun
