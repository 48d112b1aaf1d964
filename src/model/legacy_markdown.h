// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/caption_session.h"

#include <optional>
#include <QByteArray>
#include <QString>
#include <QUrl>

namespace velun {

/// Reads the Markdown transcript of an earlier version. Throws `SessionError` when the file
/// cannot be read as UTF-8 or is not such a transcript.
CaptionSession readLegacyMarkdown(const QUrl& url);

/// Reads such a transcript from the bytes of a file, as a session with this start and title.
/// Nothing if the bytes are not such a transcript. Any thread.
std::optional<CaptionSession> parseLegacyMarkdown(const QByteArray& bytes, Instant startedAt,
                                                  const QString& title);

/// The start of the session in such a file: the local time in the file's name, else the file's
/// creation time, else now. Any thread.
Instant legacyStart(const QString& path);

}  // namespace velun
