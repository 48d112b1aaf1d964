// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <QtGlobal>

namespace velun {

/// The largest file that is read: a session of about a million lines.
inline constexpr qint64 kLargestSessionFile = qint64{256} << 20;

/// Lines and translations together. Only a file made to exhaust the memory has more: in the form
/// that is written here, the largest file holds fewer.
inline constexpr std::size_t kMostLinesAndTranslations = 2'000'000;

/// Objects and lists within each other.
inline constexpr std::size_t kDeepestNesting = 1024;

}  // namespace velun
