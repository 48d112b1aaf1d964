// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace velun {

/// Which colours the user prefers for windows, chosen in the desktop's settings.
enum class ColorScheme {
  /// No preference, or not known.
  any,
  light,
  dark,
};

}  // namespace velun
