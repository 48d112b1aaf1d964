// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/caption_session.h"

#include <cstddef>
#include <exception>
#include <functional>
#include <optional>
#include <QString>
#include <QUrl>
#include <stop_token>
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

/// What is done with the session of the file at an index.
using UseSession = std::function<void(std::size_t index, CaptionSession session)>;

/// Reads files on several threads, one session each at a time, and calls `use` there with those
/// that can be read; `use` must not throw. Transcripts of an earlier version get the title
/// `legacyTitle`. Returns when all are read, or soon after `stop` is requested. Any thread.
void readSessionFiles(const std::vector<QString>& paths, const QString& legacyTitle,
                      const std::stop_token& stop, const UseSession& use);

/// The session of each file; nothing for a file that cannot be read. Any thread.
std::vector<std::optional<CaptionSession>> readSessionFiles(const std::vector<QString>& paths,
                                                            const QString& legacyTitle);

}  // namespace velun
