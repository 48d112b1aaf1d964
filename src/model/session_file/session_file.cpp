// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/session_file/session_file.h"

#include "model/session_file/json_writer.h"
#include "model/session_file/session_problem.h"
#include "model/session_file/session_reader.h"
#include "model/session_file/session_writer.h"

#include <optional>

namespace velun {

CaptionSession decodeSession(const QByteArray& bytes) {
  std::optional<CaptionSession> session = readSessionTree(bytes);
  if (!session) session = readSessionText(bytes);
  if (session->schemaVersion != 1) throw SessionProblem{SessionProblem::Kind::newerVersion};
  return std::move(*session);
}

QByteArray encodeSession(const CaptionSession& session) {
  QByteArray bytes;
  bytes.reserve(256 + static_cast<qsizetype>(session.lines.size()) * 384);
  {
    JsonWriter json(bytes);
    appendSessionHead(json, session);
    for (std::size_t i = 0; i < session.lines.size(); ++i) {
      if (i > 0) json.raw(kLineSeparator);
      appendSessionLine(json, session.lines[i]);
    }
    appendSessionTail(json, session);
  }
  return bytes;
}

}  // namespace velun
