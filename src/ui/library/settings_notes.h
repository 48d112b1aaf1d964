// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <QString>

namespace velun {

/// What the settings window says about this machine, in the interface language, asked again
/// whenever it is shown; an empty text says nothing.
struct SettingsNotes {
  /// What hiding from screen sharing amounts to on this desktop.
  std::function<QString()> captureHiding;
  /// What is being downloaded in the background.
  std::function<QString()> download;
};

}  // namespace velun
