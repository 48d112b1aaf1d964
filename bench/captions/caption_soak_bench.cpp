// SPDX-License-Identifier: GPL-3.0-or-later
// Eight hours of captions in virtual time: 10,000 lines, each translated into two languages.
#include "captions/running_captions.h"
#include "measure.h"
#include "model/session_file/session_file.h"

#include <algorithm>
#include <cstdio>

using namespace velun;
using bench::heapBytes;
using bench::processorSecondsOf;
using bench::RunningCaptions;

namespace {

constexpr int kLines = 10'000;
/// The target language changes after each chunk; the lines before are then translated again.
constexpr int kChunks = 20;
constexpr int kLinesPerChunk = kLines / kChunks;
/// Chunks compared at each end. The first chunk is a warm-up and not among them.
constexpr int kCompared = 5;

/// The measurement that other processes disturbed least.
double least(const std::vector<double>& values) {
  return *std::min_element(values.begin(), values.end());
}

/// The heap size of a copy of the lines with the same capacity.
double bytesOfLines(const CaptionSession& session) {
  const QByteArray bytes = encodeSession(session);
  const double before = heapBytes();
  CaptionSession copy = decodeSession(bytes);
  copy.lines.reserve(session.lines.capacity());
  return heapBytes() - before;
}

}  // namespace

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  RunningCaptions session;
  // Warm-up: allocates what is allocated only once.
  session.speak(-1);
  session.settings.setTargetID("ja");
  test::settle();
  session.model->stop();
  test::settle();
  session.model->newSession();
  session.model->start();
  test::settle();

  std::vector<double> seconds;
  seconds.reserve(kChunks);
  const double atStart = heapBytes();
  for (int chunk = 0; chunk < kChunks; ++chunk) {
    seconds.push_back(processorSecondsOf([&session, chunk] {
      session.settings.setTargetID(chunk % 2 == 0 ? "ko" : "ja");
      for (int line = 0; line < kLinesPerChunk; ++line) {
        session.speak(chunk * kLinesPerChunk + line);
      }
    }));
  }
  session.settings.setTargetID("ko");
  test::settle();
  for (const Line& line : session.model->lines()) {
    if (line.translations.size() != 2) {
      std::fprintf(stderr, "A line has %zu translations\n", line.translations.size());
      return 1;
    }
  }
  const double atEnd = heapBytes();
  const double lines = bytesOfLines(session.model->session());

  const double first = least({seconds.begin() + 1, seconds.begin() + 1 + kCompared});
  const double last = least({seconds.end() - kCompared, seconds.end()});
  std::printf("soak_line_us %.2f us\n", last / kLinesPerChunk * 1e6);
  std::printf("soak_slowdown %.3f ratio\n", last / first);
  std::printf("soak_growth %.3f ratio\n", (atEnd - atStart) / lines);

  session.model->stop();
  test::settle();
  session.model->newSession();
  session.model->start();
  test::settle();
  std::printf("soak_leftover_kib %.1f KiB\n", (heapBytes() - atStart) / 1024);
  return 0;
}
