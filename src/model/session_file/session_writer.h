// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/caption_session.h"

namespace velun {

class JsonWriter;

// The pieces of a session file in their order: the head, the lines with `kLineSeparator` between
// them, the tail. Put together they are the document, whatever the number of lines.

inline constexpr std::string_view kLineSeparator = ",\n";

/// Up to the opening of the list of lines.
void appendSessionHead(JsonWriter& json, const CaptionSession& session);

void appendSessionLine(JsonWriter& json, const Line& line);

/// From the closing of the list of lines; no newline at the end.
void appendSessionTail(JsonWriter& json, const CaptionSession& session);

}  // namespace velun
