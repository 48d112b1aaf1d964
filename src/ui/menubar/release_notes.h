// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace velun {

/// Maximum length of release notes that are shown, in characters.
inline constexpr qsizetype kMaxNotesLength = 1 << 14;

/// Release notes from the network, reduced to text, paragraphs, headings, lists and emphasis,
/// without attributes and with limited nesting. Qt needs minutes to lay out a few hundred nested
/// tables, and memory for as many columns as a table claims to have.
QString sanitizedHtml(const QString& html);

}  // namespace velun
