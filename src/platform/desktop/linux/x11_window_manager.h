// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <xcb/xcb.h>

class QRegion;
class QWindow;

namespace velun {

/// Speaks to the window manager of an X display, native or XWayland, about single windows. Main
/// thread.
///
/// The toolkit's own flags for these states would make the window anew, and lose what was set.
class X11WindowManager final {
 public:
  explicit X11WindowManager(xcb_connection_t* connection);

  /// What it is called, such as "KWin"; empty without one.
  QByteArray name() const;
  bool isKWin() const { return name() == "KWin"; }
  /// Whether it announces support for a property such as "_NET_WM_STATE_ABOVE".
  bool supports(const char* hint) const;
  /// Whether a compositor runs.
  bool isCompositing() const;
  /// Whether the compositor blurs behind windows that ask for it.
  bool blursBehind() const;

  /// Writes the states of a window that is not shown: the manager deletes them when it is hidden.
  void writeStates(QWindow& window, bool above) const;
  /// Asks for the same states, of a window that is shown.
  void requestStates(QWindow& window, bool above) const;
  /// Asks for a change of a shown window's level.
  void requestAbove(QWindow& window, bool above) const;
  /// A kind of window that KWin keeps above full-screen ones, or the ordinary kind. Taken notice
  /// of when the window is shown.
  void writeType(QWindow& window, bool overFullScreen) const;
  /// Whether the window is of the kind that KWin keeps above full-screen ones.
  bool isOverFullScreen(const QWindow& window) const;
  /// Whether the pointer is over the window and not over another one that covers it. On XWayland
  /// its position alone says nothing: it stays what it was once the pointer is over something that
  /// the X server does not know.
  bool isPointerOver(const QWindow& window) const;
  /// In points; an empty region ends it.
  void writeBlur(QWindow& window, const QRegion& region) const;
  void writeShape(QWindow& window, const QRegion& region) const;

 private:
  xcb_atom_t atom(const char* name) const;
  void send(QWindow& window, const char* message, const std::uint32_t (&data)[5]) const;

  xcb_connection_t* connection_;
  xcb_window_t root_;
};

}  // namespace velun
