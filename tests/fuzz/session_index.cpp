// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/listing/session_index.h"

#include "require.h"

#include <algorithm>

using namespace velun;

/// Any bytes are read as an index, first as they are, then with the checksum that they should have.
/// What is read is the same after it was written again.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
  const QString folder = QStringLiteral("/sessions");
  decodeIndex(bytes, folder);
  putIndexChecksum(bytes);
  const auto sessions = decodeIndex(bytes, folder);
  if (!sessions) return 0;
  const auto again = decodeIndex(encodeIndex(*sessions, folder), folder);
  fuzz::require(again.has_value(), "what was read can be written and read");
  fuzz::require(
      std::ranges::equal(*sessions, *again, [](const auto& a, const auto& b) { return *a == *b; }),
      "it is the same");
  return 0;
}
