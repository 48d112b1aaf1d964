// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/caption_session.h"
#include "ui/common/file_panels.h"

namespace velun {

/// Asks where to write a session in one format, renders it and writes it, all or nothing. False
/// when the user cancelled. Throws `Failure`. Main thread.
bool saveSessionFile(const CaptionSession& session, const QString& panelTitle, SessionFormat format,
                     TranscriptContent content, const std::optional<QString>& language,
                     const FilePanels& panels);

}  // namespace velun
