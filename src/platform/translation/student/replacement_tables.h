// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <span>

namespace velun {

/// Checks the tables with which a SentencePiece model normalizes text before encoding and after
/// decoding. SentencePiece follows their offsets without bounds checks. Throws `ModelFormatError`
/// for an offset outside of its table.
void checkReplacementTables(std::span<const std::byte> model);

}  // namespace velun
