// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/caption_session.h"

#include <QByteArray>

namespace velun::bench {

// The plain way with the toolkit's JSON classes: what the session codec is measured against.

/// Builds the document and indents it.
QByteArray encodeWithQt(const CaptionSession& session);

/// Parses the document and walks it.
CaptionSession decodeWithQt(const QByteArray& bytes);

}  // namespace velun::bench
