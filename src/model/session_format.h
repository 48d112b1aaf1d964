// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/clock.h"

#include <array>
#include <QString>

namespace velun {

/// The export formats, in the order of the format choice.
enum class SessionFormat { markdown, text, markdownTable, html, subRip, webVTT, json };

inline constexpr std::array allSessionFormats = {
    SessionFormat::markdown, SessionFormat::text,   SessionFormat::markdownTable,
    SessionFormat::html,     SessionFormat::subRip, SessionFormat::webVTT,
    SessionFormat::json};

/// Whether the original and its translations stand side by side.
bool isTable(SessionFormat format);

/// Whether captions with times for video players are written.
bool isSubtitles(SessionFormat format);

/// The identifier: "markdown", "text", "markdownTable", "html", "subRip", "webVTT" or "json".
QString rawValue(SessionFormat format);

/// The file extension without a dot: "md", "txt", "html", "srt", "vtt" or "json".
QString fileExtension(SessionFormat format);

/// The label in the interface language.
QString title(SessionFormat format);

/// One sentence about what the format keeps, in the interface language.
QString explanation(SessionFormat format);

/// The proposed file name for a session that started at `startedAt`, with its date in UTC:
/// "Velun-2025-03-01.md".
QString defaultFileName(SessionFormat format, Instant startedAt);

}  // namespace velun
