// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdio>
#include <cstdlib>

namespace velun::fuzz {

/// Aborts, which libFuzzer reports, if the condition is false.
inline void require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "Violated: %s\n", what);
  std::abort();
}

}  // namespace velun::fuzz
