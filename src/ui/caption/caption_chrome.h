// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/clock.h"

#include <functional>
#include <memory>

namespace velun {

/// Decides when the caption panel shows its header: while the pointer is over the panel, a menu of
/// the header is open or the header has the keyboard focus, and for 1.5 seconds afterwards. Main
/// thread.
class CaptionChrome final {
 public:
  /// `setHeaderVisible` is called only with changes. `isPointerInside`, when set, is checked before
  /// the header is hidden: a window manager that moves the panel grabs the pointer, which looks
  /// like leaving the panel.
  CaptionChrome(Clock& clock, std::function<void(bool)> setHeaderVisible,
                std::function<bool()> isPointerInside = {});

  void setHovering(bool hovering);
  void setMenuTracking(bool menuTracking);
  void setKeyboardInHeader(bool keyboardInHeader);
  /// While it is locked, the header stays hidden.
  void setLocked(bool locked);

  bool hovering() const { return hovering_; }
  bool menuTracking() const { return menuTracking_; }
  /// The last value passed to `setHeaderVisible`.
  bool showsChrome() const { return showsChrome_; }

 private:
  void update();
  void hideLater();
  void hide();

  Clock& clock_;
  std::function<void(bool)> setHeaderVisible_;
  std::function<bool()> isPointerInside_;
  bool hovering_ = false;
  bool menuTracking_ = false;
  bool keyboardInHeader_ = false;
  bool locked_ = false;
  bool showsChrome_ = false;
  std::unique_ptr<ScheduledCall> hideTask_;
};

}  // namespace velun
