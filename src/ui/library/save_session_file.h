// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/caption_session.h"
#include "ui/common/file_panels.h"

namespace velun {

/// Asks the user for a file, renders the session and writes it atomically. Returns
/// false when the user cancelled. Throws `Failure` when writing fails. Main thread.
bool saveSessionFile(const CaptionSession& session, const QString& panelTitle,
                     const ExportOptions& options, const FilePanels& panels);

}  // namespace velun
