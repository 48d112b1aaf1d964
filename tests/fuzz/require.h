// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdio>
#include <cstdlib>

namespace velun::fuzz {

/// Ends the run as a crash when something that has to hold does not.
inline void require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "Violated: %s\n", what);
  std::abort();
}

}  // namespace velun::fuzz
