// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoreApplication>

namespace velun::test {

/// Lets everything that was posted, and what that posts in turn, happen. No time passes.
inline void settle() {
  constexpr int kLongestChain = 20;
  for (int turn = 0; turn < kLongestChain; ++turn) QCoreApplication::processEvents();
}

}  // namespace velun::test
