// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPalette>
#include <QString>

namespace velun {

/// Black on white, or white on black where `desktops` is dark; what is selected in a strong colour.
/// Text that is dimmed to 0.7 of its colour still has a contrast of 7:1.
QPalette highContrastPalette(const QPalette& desktops);

/// The look of all windows: the desktop's own, or the same as users ask for it who cannot use that.
/// The caption panel has colours of its own. Main thread.
class WindowLook final {
 public:
  /// Changes all windows at once. `highContrast`: strong colours and outlines; `still`: no
  /// movements.
  void set(bool highContrast, bool still);

 private:
  bool highContrast_ = false;
  bool still_ = false;
  // The desktop's, while another one is in its place.
  QString styleName_;
};

}  // namespace velun
