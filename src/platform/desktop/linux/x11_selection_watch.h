// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractNativeEventFilter>
#include <QObject>
#include <string_view>
#include <xcb/xcb.h>

namespace velun {

/// Watches for a selection of the X server getting or losing its owner. Main thread.
class X11SelectionWatch final : public QObject, public QAbstractNativeEventFilter {
  Q_OBJECT

 public:
  X11SelectionWatch(xcb_connection_t* connection, std::string_view selection);
  ~X11SelectionWatch() override;

  bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;

 Q_SIGNALS:
  /// Emitted from the event loop, not from inside the native event filter, so that a slot may
  /// create windows.
  void changed();

 private:
  xcb_atom_t selection_;
  std::uint8_t selectionEvent_ = 0;
};

}  // namespace velun
