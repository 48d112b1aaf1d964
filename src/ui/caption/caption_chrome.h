// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/clock.h"

#include <functional>
#include <memory>

namespace velun {

/// Decides when the caption panel shows its header: while the pointer is over the panel, a menu of
/// the header is open or the header has the keyboard focus, and for 1.5 seconds afterwards. A
/// header that would cover what the pointer points at waits until the pointer has rested for
/// 0.4 seconds. Main thread.
class CaptionChrome final {
 public:
  /// What it needs of the panel; the last two may be empty.
  struct Panel {
    /// Shows or hides the header. Called only with changes.
    std::function<void(bool)> setHeaderVisible;
    /// Whether the pointer is over the panel now. Checked before the header is hidden: a window
    /// manager that moves the panel grabs the pointer, which looks like leaving the panel.
    std::function<bool()> isPointerInside = {};
    /// Whether the header, if it were shown now, would be over the pointer.
    std::function<bool()> wouldCoverPointer = {};
  };

  CaptionChrome(Clock& clock, Panel panel);

  void setHovering(bool hovering);
  void setMenuTracking(bool menuTracking);
  void setKeyboardInHeader(bool keyboardInHeader);
  /// While it is locked, the header stays hidden.
  void setLocked(bool locked);

  bool hovering() const { return hovering_; }
  bool menuTracking() const { return menuTracking_; }
  /// Whether the header is shown.
  bool showsChrome() const { return showsChrome_; }

 private:
  void update();
  void show();
  void hideLater();
  void hide();

  Clock& clock_;
  Panel panel_;
  bool hovering_ = false;
  bool menuTracking_ = false;
  bool keyboardInHeader_ = false;
  bool locked_ = false;
  bool showsChrome_ = false;
  /// Shows or hides the header later.
  std::unique_ptr<ScheduledCall> task_;
};

}  // namespace velun
