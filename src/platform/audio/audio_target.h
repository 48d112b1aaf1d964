// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace velun {

/// A device whose sound can be captured.
struct AudioTarget {
  enum class Kind {
    /// Everything that plays on an output device.
    output,
    /// A microphone or a line input.
    input,
  };

  Kind kind = Kind::output;
  /// Stays the same when the device is plugged in again. Empty for the user's default device of
  /// this kind, which is followed when it changes.
  QString id;
  /// The name to show, in the language of the sound server.
  QString name;

  bool operator==(const AudioTarget&) const = default;
};

}  // namespace velun
