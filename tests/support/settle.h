// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoreApplication>

namespace velun::test {

/// Delivers all posted events, and those that they post in turn. No time passes.
inline void settle() {
  constexpr int kMaxTurns = 20;
  for (int turn = 0; turn < kMaxTurns; ++turn) QCoreApplication::processEvents();
}

}  // namespace velun::test
