// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/english/phrase.h"

#include <optional>

namespace velun {

/// Joins letters that are said one by one: "u s a" as "USA", "c e o's" as "CEO's"; "e g" is "e.g.".
/// Where "a" and "i" may be words, only well-known abbreviations are joined. Long runs are spelled
/// names and stay as they are; before a capitalized word, letters that are no usual abbreviation
/// stay apart, because they may be initials: "W E B Du Bois". Nullopt if there are not at least two
/// letters.
std::optional<Rewriting> writeSpelledLetters(const Phrase& phrase, qsizetype at);

}  // namespace velun
