// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace velun {

/// The output tokens that are likely for each source token. Restricting the output to them makes
/// decoding several times faster with hardly any loss of quality.
class Shortlist {
 public:
  /// Reads a binary shortlist. Throws `ModelFormatError` when it is damaged or does not match
  /// vocabularies of these sizes.
  Shortlist(std::span<const std::byte> bytes, int sourceVocabulary, int targetVocabulary);

  /// The output tokens to choose from, ascending, for one source sentence with its end token. If
  /// both sides share one vocabulary, the tokens of the source are included. The count is a
  /// multiple of 8 unless the vocabulary is too small.
  std::vector<int> candidates(std::span<const int> source, bool oneVocabulary) const;

 private:
  int targetVocabulary_;
  int alwaysAllowed_;  // the most frequent tokens come first in the vocabulary
  std::vector<std::uint64_t> offsets_;
  std::vector<std::uint32_t> tokens_;
};

}  // namespace velun
