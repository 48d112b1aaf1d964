// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <QObject>
#include <QString>

namespace velun {

/// What the settings window says about this machine, in the interface language; an empty text says
/// nothing.
struct SettingsNotes {
  /// What hiding from screen sharing amounts to on this desktop.
  std::function<QString()> captureHiding;
  /// What is being downloaded in the background.
  std::function<QString()> download;
  /// Has `changed` called whenever one of them may say something else, as long as `listener` lives.
  std::function<void(const QObject* listener, const std::function<void()>& changed)> listen;
};

}  // namespace velun
