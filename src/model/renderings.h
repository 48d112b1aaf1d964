// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/caption_session.h"

namespace velun {

/// The texts of a session without title, times or labels; see `CaptionSession::transcript`.
QString renderTranscript(const CaptionSession& session, TranscriptContent content,
                         const std::optional<QString>& language);

/// The part of one line in it; may be empty.
QString renderTranscript(const Line& line, TranscriptContent content,
                         const std::optional<QString>& language);

/// A Markdown transcript with title, times, languages and quoted translations, in the interface
/// language. The format in the options does not matter.
QString renderMarkdown(const CaptionSession& session, const ExportOptions& options);

/// The same as plain text.
QString renderText(const CaptionSession& session, const ExportOptions& options);

}  // namespace velun
