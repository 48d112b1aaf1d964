// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>

namespace velun::test {

/// The number of memory allocations of the calling thread since it started, in all libraries.
/// Always 0 under a sanitizer; check `canCountAllocations` first.
std::size_t allocationCount();
bool canCountAllocations();

}  // namespace velun::test
