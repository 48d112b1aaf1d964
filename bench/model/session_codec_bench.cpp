// SPDX-License-Identifier: GPL-3.0-or-later
#include "measure.h"
#include "model/qt_session.h"
#include "model/session_file/session_file.h"
#include "support/session_samples.h"

#include <cstdlib>

using namespace velun;
using namespace velun::bench;

namespace {

void require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "%s\n", what);
  std::exit(1);
}

}  // namespace

// Writes and reads 10,000 lines with one Korean translation each, with our code and with Qt's in
// turn, so that other load on the machine affects both.
int main() {
  const CaptionSession session = test::longSession(10'000);
  const QByteArray bytes = encodeSession(session);
  require(decodeSession(bytes) == session, "the session did not come back");
  require(decodeWithQt(bytes) == session, "Qt read another session");
  require(decodeWithQt(encodeWithQt(session)) == session, "Qt wrote another session");

  std::vector<double> encode, decode, qtEncode, qtDecode;
  for (int round = 0; round < 15; ++round) {
    encode.push_back(millisecondsOf([&] { encodeSession(session); }));
    qtEncode.push_back(millisecondsOf([&] { encodeWithQt(session); }));
    decode.push_back(millisecondsOf([&] { decodeSession(bytes); }));
    qtDecode.push_back(millisecondsOf([&] { decodeWithQt(bytes); }));
  }
  report("session_encode_ms", median(encode), "ms");
  report("session_decode_ms", median(decode), "ms");
  report("session_encode_vs_qt", median(qtEncode) / median(encode), "times");
  report("session_decode_vs_qt", median(qtDecode) / median(decode), "times");
}
