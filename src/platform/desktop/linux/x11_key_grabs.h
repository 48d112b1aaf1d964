// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop/global_shortcuts.h"

#include <QAbstractNativeEventFilter>
#include <xcb/xcb.h>

namespace velun {

/// Takes keys from the X server for the whole display.
class X11KeyGrabs final : public GlobalShortcuts, public QAbstractNativeEventFilter {
  Q_OBJECT

 public:
  /// `connection` must outlive this object.
  explicit X11KeyGrabs(xcb_connection_t* connection);
  ~X11KeyGrabs() override;

  Way way() const override { return Way::program; }
  void setShortcuts(const std::vector<GlobalShortcut>& shortcuts) override;
  QStringList taken() const override { return taken_; }

  bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;

  /// The X key symbol of a Qt key; 0 for keys that cannot be taken.
  static xcb_keysym_t symbolOf(int key);

 private:
  struct Grab {
    QString id;
    xcb_keycode_t code = 0;
    std::uint16_t modifiers = 0;
  };

  void grabAll();
  void ungrabAll();
  /// Returns whether no other program has the keys.
  bool grab(const Grab& grab) const;
  void ungrab(const Grab& grab) const;
  std::vector<xcb_keycode_t> codesOf(xcb_keysym_t symbol) const;
  void press(const xcb_key_press_event_t& event);

  xcb_connection_t* connection_;
  xcb_window_t root_;
  std::vector<GlobalShortcut> shortcuts_;
  std::vector<Grab> grabs_;
  QStringList taken_;
  /// A key that is held sends releases and presses of the same time.
  xcb_timestamp_t lastRelease_ = 0;
  xcb_keycode_t lastReleased_ = 0;
};

}  // namespace velun
