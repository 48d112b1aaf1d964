// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>

namespace velun {

/// A point on the wall clock, in UTC, to the microsecond.
using Instant = std::chrono::sys_time<std::chrono::microseconds>;

}  // namespace velun
