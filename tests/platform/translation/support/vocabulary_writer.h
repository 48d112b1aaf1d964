// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace velun::test {

/// Tokens that a written vocabulary has before its words: the end token and the unknown token.
constexpr int kSpecialTokens = 2;

/// What a vocabulary replaces in a text before it is cut and after it is put together; nothing
/// where a table is empty.
struct ReplacementTables {
  std::string before;
  std::string after;
};

/// A SentencePiece model in which every word is one token.
std::vector<std::byte> writeVocabulary(const std::vector<std::string>& words,
                                       const ReplacementTables& tables = {});

/// A table of replacements in the format of SentencePiece: the size of the tree in bytes, its
/// units, and the texts put in place, each ended by NUL.
std::string writeReplacementTable(const std::vector<std::uint32_t>& units, std::string_view texts);

}  // namespace velun::test
