// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractNativeEventFilter>
#include <QObject>
#include <QPointer>
#include <QWindow>
#include <xcb/xcb.h>

namespace velun {

/// Keeps a window above the full-screen window that has the keyboard. Window managers put that one
/// above all others, also above those with the state “above”; but a window that is transient for it
/// stays above it, so the window becomes so for as long as the other fills the screen. For MATE's
/// window manager it also becomes a utility window: that one leaves a normal window in its layer.
/// Main thread.
class X11FullScreenFollower final : public QObject, public QAbstractNativeEventFilter {
  Q_OBJECT

 public:
  explicit X11FullScreenFollower(xcb_connection_t* connection);
  ~X11FullScreenFollower() override;

  /// Call it after each show and each change of the level; Qt writes the property anew in a show.
  void follow(QWindow& window, bool above);

 private:
  bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;

  void update();
  /// The window that has the keyboard.
  xcb_window_t activeWindow() const;
  bool isFullScreen(xcb_window_t window) const;
  bool isIconified(xcb_window_t window) const;
  void watch(xcb_window_t window);
  void attach(xcb_window_t owner);
  /// Whether the window is still below its owner.
  bool isBelowOwner() const;
  void write(xcb_window_t owner);
  void writeType(xcb_atom_t from, xcb_atom_t to);
  void release();

  xcb_connection_t* connection_;
  xcb_atom_t active_;
  xcb_atom_t states_;
  xcb_atom_t fullScreen_;
  xcb_atom_t stacking_;
  xcb_atom_t type_;
  xcb_atom_t normal_;
  xcb_atom_t utility_;
  xcb_atom_t iconState_;
  QPointer<QWindow> window_;
  bool above_ = false;
  xcb_window_t watched_ = XCB_WINDOW_NONE;
  /// The full-screen window that it is transient for.
  xcb_window_t owner_ = XCB_WINDOW_NONE;
  int attempts_ = 0;
  /// What it was transient for before.
  xcb_window_t before_ = XCB_WINDOW_NONE;
};

}  // namespace velun
