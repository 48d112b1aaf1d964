// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/english/phrase.h"

#include <optional>

namespace velun {

/// Writes an ordinal number from ten on, and days of months: "twenty first" as "21st", "January
/// first" as "January 1st". Leaves fractions and what may be one ("two thirds", "a tenth") in
/// words, and "twenty second", which may be "20-second", unless the words around it tell.
std::optional<Rewriting> writeOrdinal(const Phrase& phrase, qsizetype at);

}  // namespace velun
