// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/caption_session.h"

#include <QByteArray>
#include <QString>

namespace velun {

/// The largest session file that is read, in bytes: about 600,000 lines.
inline constexpr qint64 kMaxSessionFileSize = qint64{256} << 20;

/// How many bytes of capacity a session file's bytes should have behind them: simdjson may look at
/// them. Bytes with less are copied first.
inline constexpr qsizetype kSessionFilePadding = 64;

/// The maximum number of lines and translations together. Only a file made to exhaust the memory
/// has more: a file of the maximum size that was written here has fewer.
inline constexpr std::size_t kMaxLinesAndTranslations = 2'000'000;

/// The maximum number of languages that a session has translations into. Far more than anyone can
/// choose; a list of very many would make the windows stall.
inline constexpr qsizetype kMaxTranslationLanguages = 500;

/// The maximum depth of objects and lists under keys that are ignored.
inline constexpr std::size_t kMaxNesting = 1024;

/// The session file: UTF-8 JSON, pretty printed, keys sorted, times in whole seconds.
QByteArray encodeSession(const CaptionSession& session);

/// Reads a session file on any thread. Throws `SessionProblem`; never returns a part of a session.
CaptionSession decodeSession(const QByteArray& bytes);

}  // namespace velun
