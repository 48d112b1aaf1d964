// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <QRect>
#include <xcb/xcb_ewmh.h>

class QRegion;
class QWindow;

namespace velun {

/// Sends requests about single windows to the window manager of an X display, native or XWayland.
/// Main thread.
///
/// Qt's own flags for these states would recreate the native window and lose its properties.
class X11WindowManager final {
 public:
  /// Null when the X server does not answer. `connection` must outlive the result.
  static std::unique_ptr<X11WindowManager> open(xcb_connection_t* connection);
  ~X11WindowManager();

  X11WindowManager(const X11WindowManager&) = delete;
  X11WindowManager& operator=(const X11WindowManager&) = delete;

  bool isKWin() const;
  /// Whether the manager keeps windows above ordinary ones.
  bool keepsAbove() const { return supports(ewmh_._NET_WM_STATE_ABOVE); }
  /// Whether it shows windows on every virtual desktop.
  bool showsOnAllDesktops() const;
  /// Whether it moves and resizes windows on request.
  bool movesWindows() const { return supports(ewmh_._NET_WM_MOVERESIZE); }
  /// The area of the current virtual desktop that no dock covers, in pixels; empty if unknown.
  QRect workArea() const;
  /// Whether a compositor runs.
  bool isCompositing() const;
  /// Whether the compositor blurs the background of windows that ask for it.
  bool blursBehind() const;

  /// Writes the states of a hidden window. The manager deletes them when it hides the window.
  void writeStates(QWindow& window, bool above) const;
  /// Requests the same states for a shown window.
  void requestStates(QWindow& window, bool above) const;
  /// Requests a change of a shown window's level.
  void requestAbove(QWindow& window, bool above) const;
  /// Sets the window type that KWin keeps above full-screen windows, or the normal type. Takes
  /// effect when the window is next shown.
  void writeType(QWindow& window, bool overFullScreen) const;
  /// Whether the window has the type that KWin keeps above full-screen windows.
  bool isOverFullScreen(const QWindow& window) const;
  /// Whether the X server can pass clicks on to the windows beneath a window.
  bool passesClicks() const { return hasShapes_; }
  /// Passes them on, or gives them to the window again.
  void writeClickThrough(QWindow& window, bool isThrough) const;
  /// Whether the pointer is over the window and no other window covers it there. The pointer's
  /// position alone is not enough on XWayland: it no longer changes once the pointer is over a
  /// Wayland window.
  bool isPointerOver(const QWindow& window) const;
  /// `region` is in points; an empty region ends the blur.
  void writeBlur(QWindow& window, const QRegion& region) const;

 private:
  X11WindowManager() = default;

  bool supports(xcb_atom_t hint) const;
  void request(QWindow& window, xcb_ewmh_wm_state_action_t action, xcb_atom_t first,
               xcb_atom_t second) const;

  // Its functions take it as mutable.
  mutable xcb_ewmh_connection_t ewmh_{};
  xcb_connection_t* connection_ = nullptr;
  xcb_window_t root_ = XCB_WINDOW_NONE;
  bool hasShapes_ = false;
  xcb_atom_t criticalType_ = XCB_ATOM_NONE;
  xcb_atom_t blur_ = XCB_ATOM_NONE;
};

}  // namespace velun
