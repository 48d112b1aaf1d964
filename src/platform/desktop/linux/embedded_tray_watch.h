// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop/linux/x11_selection_watch.h"

#include <cstdint>
#include <memory>
#include <optional>

namespace velun {

/// Watches the X selection that an XEmbed tray owns. There is never a tray on a display that is
/// not X. Main thread.
class EmbeddedTrayWatch final : public QObject {
  Q_OBJECT

 public:
  EmbeddedTrayWatch();

  bool hasTray() const { return owner() != XCB_WINDOW_NONE; }

  void stopWatching() { watch_.reset(); }

  /// The colour (0xRRGGBB) that the tray requests for its icons; empty when it requests none.
  std::optional<std::uint32_t> foreground() const;

 Q_SIGNALS:
  /// A tray came or went. Emitted from the event loop, until stopWatching().
  void changed();

 private:
  xcb_window_t owner() const;

  xcb_connection_t* connection_;
  std::unique_ptr<X11SelectionWatch> watch_;
};

}  // namespace velun
