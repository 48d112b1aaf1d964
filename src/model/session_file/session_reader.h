// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/caption_session.h"

#include <optional>
#include <QByteArray>

namespace velun {

// One reader with two sources of values. Both read the same table of fields and give the same
// session. Any version, any thread.

/// Reads a session file from simdjson's document tree. Nothing if anything in the file is out of
/// the ordinary; `readSessionText` then reads or refuses it.
std::optional<CaptionSession> readSessionTree(const QByteArray& bytes);

/// Reads a session file from its text. Several times slower than `readSessionTree`, but it reads
/// files of any size without tables beside the session, and says what is wrong and at which line.
/// Throws `SessionProblem`.
CaptionSession readSessionText(const QByteArray& bytes);

}  // namespace velun
