// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/english/phrase.h"

#include <optional>

namespace velun {

/// Joins letters that are said one by one: "u s a" as "USA", "t v" as "TV". Where "a" and "i" may
/// be words, only well-known abbreviations are joined. Long runs are spelled names and stay as they
/// are. Nullopt if there are not at least two letters.
std::optional<Rewriting> writeSpelledLetters(const Phrase& phrase, qsizetype at);

}  // namespace velun
