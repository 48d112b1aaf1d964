// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>

namespace velun::test {

/// How often the calling thread has asked for memory since it started, through whatever library.
/// Always 0 where a sanitizer manages the memory; ask `canCountAllocations` first.
std::size_t allocationCount();
bool canCountAllocations();

}  // namespace velun::test
