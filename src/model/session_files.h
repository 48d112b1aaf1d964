// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/caption_session.h"

#include <optional>
#include <QString>
#include <vector>

namespace velun {

/// Whether a file is read as a transcript of an earlier version: its extension is "md" in upper or
/// lower case.
bool isLegacyFile(const QString& path);

/// The paths of a folder's session files and transcripts of an earlier version, sorted by name,
/// without hidden files. Empty for a folder that does not exist. Throws `FileError`.
std::vector<QString> sessionFiles(const QString& folder);

/// The session of each file; nothing for a file that cannot be read. Transcripts of an earlier
/// version get the title `legacyTitle`. Reads on several threads and returns when all are read.
/// Any thread.
std::vector<std::optional<CaptionSession>> readSessionFiles(const std::vector<QString>& paths,
                                                            const QString& legacyTitle);

}  // namespace velun
