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

/// What is read when the file's bytes are there already: a session called `title` that began at
/// `startedAt`. None when it is not such a transcript. Any thread.
std::optional<CaptionSession> parseLegacyMarkdown(const QByteArray& bytes, Instant startedAt,
                                                  const QString& title);

/// When the session of such a file began: at the local time that is its name, else when the file
/// was created, else now. Any thread.
Instant legacyStart(const QString& path);

}  // namespace velun
