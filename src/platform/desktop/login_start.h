// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace velun {

/// Whether the desktop starts the program when the user logs in. Main thread.
class LoginStart {
 public:
  virtual ~LoginStart() = default;

  /// Whether the program may change it here.
  virtual bool isPossible() const = 0;
  virtual bool isEnabled() const = 0;
  /// Throws `Failure`.
  virtual void setEnabled(bool enabled) = 0;
};

}  // namespace velun
