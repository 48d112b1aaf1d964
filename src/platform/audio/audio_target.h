// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace velun {

/// A device or a program whose sound can be captured.
struct AudioTarget {
  enum class Kind {
    /// Everything that plays on an output device.
    output,
    /// A microphone or a line input.
    input,
    /// What one program plays, on whichever output.
    program,
    /// What all programs but one play.
    otherPrograms,
  };

  Kind kind = Kind::output;
  /// Stays the same when the device is plugged in again or the program is started again. Empty for
  /// the user's default device of this kind, which is followed when it changes; a program has an
  /// id.
  QString id;
  /// The name to show, in the language of the sound server.
  QString name;

  bool isProgram() const { return kind == Kind::program || kind == Kind::otherPrograms; }
  bool operator==(const AudioTarget&) const = default;
};

}  // namespace velun
