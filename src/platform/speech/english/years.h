// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/english/phrase.h"

#include <optional>

namespace velun {

/// Writes a year or a decade that is said in two parts ("nineteen eighty four", "twenty oh five",
/// "nineteen eighties") or from 2000 on ("two thousand and five"). Where it might be two numbers
/// ("fifteen twenty") or an amount ("two thousand"), the words around it must be those of a year.
std::optional<Rewriting> writeYear(const Phrase& phrase, qsizetype at);

}  // namespace velun
