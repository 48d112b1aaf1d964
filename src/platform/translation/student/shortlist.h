// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace velun {

/// Which output tokens a source token makes likely. Restricting the output to them makes decoding
/// several times cheaper at hardly any loss.
class Shortlist {
 public:
  /// Reads a binary shortlist whole. Throws `ModelFormatError` when it is damaged or does not
  /// fit vocabularies of these sizes.
  Shortlist(std::span<const std::byte> bytes, int sourceVocabulary, int targetVocabulary);

  /// The output tokens to choose from, ascending, for one source sentence with its end token.
  /// With one vocabulary for both sides the source's own tokens are among them. Their number is
  /// a multiple of eight where the vocabulary allows.
  std::vector<int> candidates(std::span<const int> source, bool oneVocabulary) const;

 private:
  int targetVocabulary_;
  int alwaysAllowed_;  // the most frequent tokens come first in the vocabulary
  std::vector<std::uint64_t> offsets_;
  std::vector<std::uint32_t> tokens_;
};

}  // namespace velun
