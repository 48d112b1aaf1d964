// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/session_file/session_reader.h"

#include "model/session_file/session_file.h"
#include "model/session_file/session_problem.h"
#include "require.h"

using namespace velun;
using fuzz::require;

namespace {

std::optional<CaptionSession> readText(const QByteArray& bytes) {
  try {
    return readSessionText(bytes);
  } catch (const SessionProblem& problem) {
    require(!describe(problem, QStringLiteral("a.json")).isEmpty(), "a refusal says why");
    return std::nullopt;
  }
}

}  // namespace

/// Any bytes are read or refused, tree and text give the same session, and a session that was
/// written is read back unchanged.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
  const std::optional<CaptionSession> tree = readSessionTree(bytes);
  const std::optional<CaptionSession> text = readText(bytes);
  require(!tree || text, "what is read from the tree is read from the text");
  require(!tree || *tree == *text, "tree and text give the same session");
  if (!text) return 0;

  const QByteArray written = encodeSession(*text);
  const std::optional<CaptionSession> again = readSessionTree(written);
  require(again && *again == *text, "a written session is read back unchanged");
  require(encodeSession(*again) == written, "and is written as the same bytes");
  return 0;
}
