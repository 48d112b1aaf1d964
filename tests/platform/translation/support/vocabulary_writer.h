// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace velun::test {

/// The tokens before the words of a written vocabulary: the end token and the unknown token.
constexpr int kSpecialTokens = 2;

/// The tables with which a vocabulary normalizes text before encoding and after decoding. An empty
/// table replaces nothing.
struct ReplacementTables {
  std::string before;
  std::string after;
};

/// A SentencePiece model in which every word is one token.
std::vector<std::byte> writeVocabulary(const std::vector<std::string>& words,
                                       const ReplacementTables& tables = {});

/// A table of replacements in the format of SentencePiece: the size of the trie in bytes, its
/// units, and the replacement texts, each ending in NUL.
std::string writeReplacementTable(const std::vector<std::uint32_t>& units, std::string_view texts);

}  // namespace velun::test
