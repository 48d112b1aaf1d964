// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace velun {

/// The longest release notes that are shown, in characters.
inline constexpr qsizetype kLongestNotes = 1 << 14;

/// Release notes from the network with nothing left in them but text, paragraphs, headings, lists
/// and emphasis, in elements without attributes and not deep in each other. The toolkit needs
/// minutes for a few hundred tables in each other, and memory for whatever number of columns a
/// table claims to have.
QString modestHtml(const QString& html);

}  // namespace velun
