// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/english/phrase.h"

#include <optional>

namespace velun {

/// Writes three or more digits that are said one by one: a phone number as "555-0123", "four oh
/// four" as "404". Counting ("one two three") and what may be counting stay words. Nullopt for
/// fewer digits.
std::optional<Rewriting> writeDigitString(const Phrase& phrase, qsizetype at);

}  // namespace velun
