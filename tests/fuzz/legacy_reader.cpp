// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/legacy_markdown.h"
#include "model/session_file/session_file.h"
#include "model/session_file/session_problem.h"
#include "require.h"

using namespace velun;
using fuzz::require;

/// Any bytes are read or refused; what was read can be saved as a session file.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
  CaptionSession session;
  try {
    session = parseLegacyMarkdown(bytes, Instant(), QStringLiteral("title"));
  } catch (const SessionProblem&) {
    return 0;
  }
  for (const Line& line : session.lines) {
    require(line.legacyTimestamp && !line.legacyTimestamp->contains('`'), "a time ends its quotes");
    require(!line.text.contains('\n') && !line.text.startsWith(' '),
            "a caption is one trimmed line");
    require(!line.time && !line.input && line.translations.empty(), "the rest is not known");
  }
  require(decodeSession(encodeSession(session)) == session, "a saved import is read as the same");
  return 0;
}
