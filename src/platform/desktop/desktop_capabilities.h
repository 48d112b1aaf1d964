// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace velun {

/// How a window is kept out of what is captured from the screen.
enum class CaptureHiding {
  /// Nothing can be done here.
  none,
  /// The compositor leaves the window out of what it hands to a screen cast.
  compositor,
  /// The window is taken off the screen while a screen cast runs.
  whileCasting,
};

/// What the desktop lets a window do, as found so far.
struct DesktopCapabilities {
  /// Windows can be kept above ordinary ones.
  bool keepsOnTop = false;
  /// Windows can be shown on every desktop space.
  bool allSpaces = false;
  /// Windows can be put at a place of the program's choice.
  bool placesWindows = false;
  /// Translucent windows show what is behind them; otherwise they are drawn on black.
  bool compositing = false;
  /// What shows through can be blurred.
  bool blursBehind = false;
  /// Windows of the panel's kind can be moved and resized by the window manager.
  bool movesByItself = false;
  CaptureHiding captureHiding = CaptureHiding::none;

  bool operator==(const DesktopCapabilities&) const = default;
};

}  // namespace velun
