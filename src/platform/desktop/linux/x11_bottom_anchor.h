// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractNativeEventFilter>
#include <QHash>
#include <QSize>
#include <xcb/xcb.h>

class QWindow;

namespace velun {

/// Keeps what is drawn at the bottom of a window in place while it grows or shrinks at its top.
/// Main thread.
class X11BottomAnchor final : public QAbstractNativeEventFilter {
 public:
  explicit X11BottomAnchor(xcb_connection_t* connection);
  ~X11BottomAnchor() override;

  /// From now on. A native window that is made anew needs it again.
  void keep(const QWindow& window);

 private:
  bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;

  xcb_connection_t* connection_;
  /// Native windows → their size, in pixels, as the server last told.
  QHash<xcb_window_t, QSize> sizes_;
};

}  // namespace velun
