// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace velun {

/// How a window is hidden from screen capture.
enum class CaptureHiding {
  /// Not possible on this desktop.
  none,
  /// The compositor leaves the window out of screen casts.
  compositor,
  /// The window is hidden while a screen cast runs.
  whileCasting,
};

/// What the desktop supports, as far as known.
struct DesktopCapabilities {
  /// Windows can be kept above ordinary ones.
  bool keepsOnTop = false;
  /// Windows can be shown on every virtual desktop.
  bool allSpaces = false;
  /// The program can choose the position of the panel.
  bool placesWindows = false;
  /// Wayland: where the program's ordinary windows lie is known to the compositor alone, and so is
  /// the panel's place unless `placesWindows`.
  bool hidesPlaces = false;
  /// Translucent windows show the windows behind them; otherwise they are drawn on black.
  bool compositing = false;
  /// The background of translucent windows can be blurred.
  bool blursBehind = false;
  /// The window manager can move and resize windows of the panel's type.
  bool movesByItself = false;
  /// Clicks can be passed on to the windows beneath a window.
  bool passesClicks = false;
  CaptureHiding captureHiding = CaptureHiding::none;
  /// Programs can read the screen without a screen cast, which `captureHiding` does not prevent: on
  /// X11 every program can.
  bool readsWithoutCast = false;

  bool operator==(const DesktopCapabilities&) const = default;
};

}  // namespace velun
