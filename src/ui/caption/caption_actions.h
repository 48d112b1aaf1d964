// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

namespace velun {

/// What the caption window asks the rest of the program to do. Every callback is set; all run on
/// the main thread.
struct CaptionActions {
  /// Starts or stops captions.
  std::function<void()> toggleCaptions;
  /// Hides the panel.
  std::function<void()> hide;
  /// Saves the running session now.
  std::function<void()> saveSession;
  /// Opens the saved-sessions window.
  std::function<void()> showHistory;
  /// Opens the export window for the running session.
  std::function<void()> exportSession;
  /// Ends the running session and begins a new one.
  std::function<void()> newSession;
  /// Opens the settings window.
  std::function<void()> showSettings;
  /// Shows or hides the panel's header.
  std::function<void(bool visible)> setHeaderVisible;
};

}  // namespace velun
