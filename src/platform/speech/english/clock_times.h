// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/english/phrase.h"

#include <optional>

namespace velun {

/// Writes a time of day: "three thirty p m" as "3:30 p.m.", "at ten fifteen" as "at 10:15", "three
/// to four p m" as "3 to 4 p.m.". Leaves "three o'clock" and "half past three" in words.
std::optional<Rewriting> writeClockTime(const Phrase& phrase, qsizetype at);

}  // namespace velun
