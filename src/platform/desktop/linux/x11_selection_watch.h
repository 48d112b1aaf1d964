// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <QAbstractNativeEventFilter>
#include <QObject>
#include <xcb/xcb.h>

namespace velun {

/// Tells when a selection of the X server gets or loses its owner. Main thread.
class X11SelectionWatch final : public QObject, public QAbstractNativeEventFilter {
 public:
  /// `onChange` is called from the event loop.
  X11SelectionWatch(xcb_connection_t* connection, const char* selection,
                    std::function<void()> onChange);
  ~X11SelectionWatch() override;

  bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;

 private:
  std::function<void()> onChange_;
  xcb_atom_t selection_;
  std::uint8_t selectionEvent_ = 0;
};

}  // namespace velun
