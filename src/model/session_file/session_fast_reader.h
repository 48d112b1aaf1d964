// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/caption_session.h"

#include <QByteArray>

namespace velun {

/// The bytes that the fast reader may look at, without using them, behind the file's own. Bytes
/// with less capacity are copied first.
inline constexpr qsizetype kFastReaderPadding = 64;

/// Reads a well-formed session file; none when anything about it is out of the ordinary, which is
/// for `readSessionCarefully` to judge. What it gives is what that one gives. Any thread.
std::optional<CaptionSession> readSessionFast(const QByteArray& bytes);

}  // namespace velun
