// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/english/phrase.h"

#include <optional>

namespace velun {

/// Writes the number that begins at a position as captions write it: "1984", "$3.5 million", "12%",
/// "3:30 p.m.", "21st", "12,500". Numbers below ten stay words in running text, and so does
/// everything that can be read in two ways. Nullopt if no number begins there.
std::optional<Rewriting> writeNumber(const Phrase& phrase, qsizetype at);

}  // namespace velun
