// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace velun::test {

/// Tokens that a written vocabulary has before its words: the end token and the unknown token.
constexpr int kSpecialTokens = 2;

/// A SentencePiece model in which every word is one token. It changes nothing about the text.
std::vector<std::byte> writeVocabulary(const std::vector<std::string>& words);

}  // namespace velun::test
