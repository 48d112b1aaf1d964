// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <span>

namespace velun {

/// Checks that the tables of a SentencePiece model, which say what to replace in a text before it
/// is cut and after it is put together, never lead out of themselves: the library follows them
/// without looking. Throws `ModelFormatError`.
void checkReplacementTables(std::span<const std::byte> model);

}  // namespace velun
