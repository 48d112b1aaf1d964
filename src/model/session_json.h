// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/caption_session.h"

namespace velun {

class JsonAppender;

// The pieces of a session file, in their order: the head, the lines with `kLineSeparator` between
// them, the tail. Put together they are the document, whatever the number of lines.

inline constexpr std::string_view kLineSeparator = ",\n";

/// Up to the opening of the list of lines.
void appendSessionHead(JsonAppender& json, const CaptionSession& session);

void appendSessionLine(JsonAppender& json, const Line& line);

/// From the closing of the list of lines; no newline at the end.
void appendSessionTail(JsonAppender& json, const CaptionSession& session);

}  // namespace velun
