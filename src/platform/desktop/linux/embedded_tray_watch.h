// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <QAbstractNativeEventFilter>
#include <QObject>
#include <xcb/xcb.h>

namespace velun {

/// Watches the X selection that an XEmbed tray owns. On a display that is not X there is none.
/// Main thread.
class EmbeddedTrayWatch final : public QObject, public QAbstractNativeEventFilter {
 public:
  /// `onArrival` is called when a tray takes the selection.
  explicit EmbeddedTrayWatch(std::function<void()> onArrival);
  ~EmbeddedTrayWatch() override;

  bool isThere() const { return owner() != XCB_WINDOW_NONE; }

  void stopWatching();

  /// The colour (0xRRGGBB) that the tray says its icons should have.
  std::optional<std::uint32_t> foreground() const;

  bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;

 private:
  xcb_window_t owner() const;

  std::function<void()> onArrival_;
  xcb_connection_t* connection_ = nullptr;
  xcb_atom_t selection_ = XCB_ATOM_NONE;
  xcb_atom_t colours_ = XCB_ATOM_NONE;
  std::uint8_t selectionEvent_ = 0;
};

}  // namespace velun
