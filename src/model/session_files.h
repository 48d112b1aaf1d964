// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/caption_session.h"

#include <exception>
#include <optional>
#include <QString>
#include <QUrl>
#include <vector>

namespace velun {

/// Whether a file is read as a transcript of an earlier version: its extension is "md" in upper or
/// lower case.
bool isLegacyFile(const QString& path);

/// The paths of a folder's session files and transcripts of an earlier version, sorted by name,
/// without hidden files. Empty for a folder that does not exist. Throws `FileError`.
std::vector<QString> sessionFiles(const QString& folder);

/// Reads a session file or a transcript of an earlier version, which gets the title `legacyTitle`.
/// Throws `FileError` or `SessionProblem`. Any thread.
CaptionSession readSessionFile(const QString& path, const QString& legacyTitle);

/// Says that a file is not on this computer, in the interface language. Main thread.
QString remoteFileText(const QUrl& url);

/// Why `readSessionFile` has failed, in the interface language. Main thread.
QString readingErrorText(std::exception_ptr error, const QString& path);

/// The session of each file; nothing for a file that cannot be read. Transcripts of an earlier
/// version get the title `legacyTitle`. Reads on several threads and returns when all are read.
/// Any thread.
std::vector<std::optional<CaptionSession>> readSessionFiles(const std::vector<QString>& paths,
                                                            const QString& legacyTitle);

}  // namespace velun
