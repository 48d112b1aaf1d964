// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/caption_session.h"

#include <QString>
#include <QUrl>

namespace velun {

/// Reads the Markdown transcript of an earlier version. Throws `SessionError` when the file
/// cannot be read as UTF-8 or is not such a transcript.
CaptionSession readLegacyMarkdown(const QUrl& url);

}  // namespace velun
