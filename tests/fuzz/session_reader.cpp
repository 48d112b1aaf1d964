// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/session_file/session_reader.h"

#include "model/session_file/session_file.h"
#include "model/session_file/session_problem.h"
#include "require.h"

using namespace velun;
using fuzz::require;

namespace {

std::optional<CaptionSession> readCarefully(const QByteArray& bytes) {
  try {
    return readSessionText(bytes);
  } catch (const SessionProblem& problem) {
    require(!describe(problem, QStringLiteral("a.json")).isEmpty(), "a refusal says why");
    return std::nullopt;
  }
}

}  // namespace

/// Any bytes are read or refused; both readers agree; what was read is written and read again as
/// the same session.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
  const std::optional<CaptionSession> fast = readSessionTree(bytes);
  const std::optional<CaptionSession> careful = readCarefully(bytes);
  require(!fast || careful, "what the fast reader takes, the careful one takes");
  require(!fast || *fast == *careful, "both readers read the same");
  if (!careful) return 0;

  const QByteArray written = encodeSession(*careful);
  const std::optional<CaptionSession> again = readSessionTree(written);
  require(again && *again == *careful, "a written session is read as the same");
  require(encodeSession(*again) == written, "and is written as the same bytes");
  return 0;
}
