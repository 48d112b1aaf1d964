// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPalette>
#include <QString>

namespace velun {

/// Black on white, or white on black where `desktops` is dark; what is selected in a strong colour.
/// Text that is dimmed to 0.7 of its colour still has a contrast of 7:1.
QPalette highContrastPalette(const QPalette& desktops);

/// The look of all windows but the caption panel: the desktop's own, or the same with strong
/// colours and outlines. Main thread.
class WindowContrast final {
 public:
  /// Changes all windows at once.
  void setHigh(bool high);

 private:
  bool high_ = false;
  // The desktop's.
  QString styleName_;
};

}  // namespace velun
