// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/caption_session.h"

#include <optional>
#include <QString>
#include <vector>

namespace velun {

/// Whether a file is read as the transcript of an earlier version: its name ends in ".md", in any
/// case.
bool isLegacyFile(const QString& path);

/// The paths of a folder's session files and earlier transcripts, hidden ones left out, in the
/// order of their names. Throws `FileError`.
std::vector<QString> sessionFiles(const QString& folder);

/// The session of each file, none for one that cannot be read. Transcripts of an earlier version
/// are called `legacyTitle`. Reads on several threads and returns when all is read. Any thread.
std::vector<std::optional<CaptionSession>> readSessionFiles(const std::vector<QString>& paths,
                                                            const QString& legacyTitle);

}  // namespace velun
