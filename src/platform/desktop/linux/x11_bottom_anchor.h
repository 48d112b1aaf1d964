// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractNativeEventFilter>
#include <QHash>
#include <QSize>
#include <xcb/xcb.h>

class QWindow;

namespace velun {

/// Keeps the picture of a window fixed to its bottom edge while the window grows or shrinks at its
/// top. Main thread.
class X11BottomAnchor final : public QAbstractNativeEventFilter {
 public:
  explicit X11BottomAnchor(xcb_connection_t* connection);
  ~X11BottomAnchor() override;

  /// Applies until the native window is destroyed; call it again for a recreated one.
  void keep(const QWindow& window);

 private:
  bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;

  xcb_connection_t* connection_;
  /// Native windows → their last size reported by the server, in pixels.
  QHash<xcb_window_t, QSize> sizes_;
};

}  // namespace velun
