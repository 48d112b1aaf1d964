// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop/linux/x11_selection_watch.h"

#include <cstdint>
#include <memory>
#include <optional>

namespace velun {

/// Watches the X selection that an XEmbed tray owns. On a display that is not X there is none.
/// Main thread.
class EmbeddedTrayWatch final {
 public:
  /// `onChange` is called from the event loop when a tray comes or goes.
  explicit EmbeddedTrayWatch(std::function<void()> onChange);

  bool isThere() const { return owner() != XCB_WINDOW_NONE; }

  void stopWatching() { watch_.reset(); }

  /// The colour (0xRRGGBB) that the tray says its icons should have.
  std::optional<std::uint32_t> foreground() const;

 private:
  xcb_window_t owner() const;

  xcb_connection_t* connection_;
  std::unique_ptr<X11SelectionWatch> watch_;
};

}  // namespace velun
