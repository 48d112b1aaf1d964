// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/caption_session.h"

#include <QByteArray>

namespace velun::bench {

// The session file with Qt's JSON classes, as the reference for the measurements.

/// Builds the document and indents it.
QByteArray encodeWithQt(const CaptionSession& session);

/// Parses the document and walks it.
CaptionSession decodeWithQt(const QByteArray& bytes);

}  // namespace velun::bench
