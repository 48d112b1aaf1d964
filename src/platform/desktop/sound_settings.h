// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace velun {

/// The desktop's window for sound devices. Main thread.
class SoundSettings {
 public:
  virtual ~SoundSettings() = default;

  /// Whether a program for it is installed.
  virtual bool isAvailable() const = 0;
  /// Starts that program, if there is one.
  virtual void open() = 0;
};

}  // namespace velun
