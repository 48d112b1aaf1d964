// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <QString>
#include <vector>

namespace velun {

/// The form of a text that is compared in a search: case is folded, accents are kept.
QString foldedForSearch(const QString& text);

/// A range of a text, in UTF-16 units.
struct TextRange {
  qsizetype position = 0;
  qsizetype length = 0;
  bool operator==(const TextRange&) const = default;
};

/// The ranges of `text` that match `search`, at most `limit`.
std::vector<TextRange> matchesIn(const QString& text, const QString& search, std::size_t limit);

}  // namespace velun
