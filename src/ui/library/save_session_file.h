// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/caption_session.h"
#include "ui/common/file_panels.h"

namespace velun {

/// Asks the user for a file, renders the session in `format` and writes it atomically. Returns
/// false when the user cancelled. Throws `Failure` when writing fails. Main thread.
bool saveSessionFile(const CaptionSession& session, const QString& panelTitle, SessionFormat format,
                     TranscriptContent content, const std::optional<QString>& language,
                     const FilePanels& panels);

}  // namespace velun
