// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/transcription_result.h"

#include <QByteArray>

namespace velun {

/// Encodes a result as the body of a `draft` or `final` message: its text and words as JSON.
QByteArray encodedResult(const TranscriptionResult& result);

/// Decodes the body of a `draft` or `final` message. Invalid members are left out, and invalid JSON
/// gives an empty text.
TranscriptionResult decodedResult(const QByteArray& body, bool isFinal);

}  // namespace velun
