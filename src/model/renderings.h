// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/caption_session.h"

namespace velun {

/// The bare texts of a session: see `CaptionSession::transcript`.
QString renderTranscript(const CaptionSession& session, TranscriptContent content,
                         const std::optional<QString>& language);

/// What one line adds to it; empty when it adds nothing.
QString renderTranscript(const Line& line, TranscriptContent content,
                         const std::optional<QString>& language);

/// A Markdown transcript with title, times, languages and quoted translations, in the interface
/// language. An absent language is all translations.
QString renderMarkdown(const CaptionSession& session, TranscriptContent content,
                       const std::optional<QString>& language);

/// The same as plain text.
QString renderText(const CaptionSession& session, TranscriptContent content,
                   const std::optional<QString>& language);

}  // namespace velun
