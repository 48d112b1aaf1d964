// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/caption_session.h"

#include <QByteArray>

namespace velun {

/// Reads a session file in one pass and says exactly what is wrong with it. Several times slower
/// than `readSessionFast`, but with no memory of its own beside the session. Throws
/// `SessionProblem`. Any thread.
CaptionSession readSessionCarefully(const QByteArray& bytes);

}  // namespace velun
