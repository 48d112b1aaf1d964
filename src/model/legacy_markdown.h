// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/caption_session.h"

#include <QByteArray>
#include <QString>

namespace velun {

/// Reads the Markdown transcript of an earlier version from the bytes of a file, as a session with
/// this start and title. Throws `SessionProblem` if the bytes are not such a transcript. Any
/// thread.
CaptionSession parseLegacyMarkdown(const QByteArray& bytes, Instant startedAt,
                                   const QString& title);

/// The start of the session in such a file: the local time in the file's name, else the file's
/// creation time, else now. Any thread.
Instant legacyStart(const QString& path);

}  // namespace velun
