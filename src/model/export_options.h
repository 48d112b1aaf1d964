// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/session_format.h"
#include "model/transcript_content.h"

#include <cstddef>
#include <optional>
#include <QString>

namespace velun {

/// Consecutive lines of a session.
struct LineRange {
  std::size_t first = 0;
  std::size_t count = 0;

  bool operator==(const LineRange&) const = default;
};

/// What an export holds. `json` always holds everything.
struct ExportOptions {
  SessionFormat format = SessionFormat::markdown;
  TranscriptContent content = TranscriptContent::both;
  /// The language of the translations; absent: all of them. Subtitles have room for one.
  std::optional<QString> language = {};
  /// Whether Markdown and text show the time of each line.
  bool showsTimes = true;
  /// Absent: the whole session.
  std::optional<LineRange> lines = {};
};

}  // namespace velun
