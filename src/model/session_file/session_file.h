// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/caption_session.h"
#include "platform/foundation/failure.h"

#include <optional>
#include <QByteArray>
#include <QString>

namespace velun {

/// A refusal to read or write a session, with one finished text.
class SessionError final : public Failure {
 public:
  using Failure::Failure;
};

/// The session file's bytes: UTF-8 JSON, pretty printed, keys sorted, times to the second.
QByteArray encodeSession(const CaptionSession& session);

/// Reads a session file's bytes. Throws `SessionError` with a finished text that names
/// `fileName` and what is wrong; never gives part of a session.
CaptionSession decodeSession(const QByteArray& bytes, const QString& fileName);

/// The same where nobody asks what is wrong: none for bytes that `decodeSession` refuses. Any
/// thread.
std::optional<CaptionSession> decodeReadableSession(const QByteArray& bytes);

}  // namespace velun
