// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <QString>

namespace velun {

/// Everything that a user can ask the program as a whole to do, from a menu or from outside.
enum class AppCommand {
  toggleCaptions,
  togglePanel,
  showPanel,
  restorePosition,
  saveSession,
  /// Saves what the active window shows: a selected saved session, else the live one.
  saveDocument,
  newSession,
  showHistory,
  exportCurrentSession,
  showSettings,
  openSessionsFolder,
  openSessionFile,
  selectComputer,
  selectMicrophone,
  toggleKeepOnTop,
  checkForUpdates,
  showAbout,
  terminate,
};

/// How a command stands at the moment.
struct CommandValidation {
  bool isEnabled = true;
  /// Replaces the menu item's title.
  std::optional<QString> title;

  bool operator==(const CommandValidation&) const = default;
};

}  // namespace velun
