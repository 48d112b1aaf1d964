// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop/sound_settings.h"

#include <QStringList>

namespace velun {

/// Looks for the programs of the usual desktops, that of the running desktop (XDG_CURRENT_DESKTOP)
/// first.
class LinuxSoundSettings final : public SoundSettings {
 public:
  bool isAvailable() const override { return !command().isEmpty(); }
  void open() override;

  /// The program's path and its arguments; empty if none is installed.
  static QStringList command();
};

}  // namespace velun
