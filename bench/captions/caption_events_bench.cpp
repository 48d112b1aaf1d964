// SPDX-License-Identifier: GPL-3.0-or-later
// The cost of single events in a session of 10,000 lines, without a window.
#include "captions/running_captions.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>

using namespace velun;
using bench::RunningCaptions;

namespace {

constexpr int kLines = 10'000;
constexpr int kSamples = 2'000;

/// The times that the calls took, in microseconds, in ascending order.
std::vector<double> sortedMicroseconds(const std::function<void(int)>& call) {
  std::vector<double> times;
  for (int sample = 0; sample < kSamples; ++sample) {
    const auto begin = std::chrono::steady_clock::now();
    call(sample);
    const auto end = std::chrono::steady_clock::now();
    times.push_back(std::chrono::duration<double, std::micro>(end - begin).count());
  }
  std::sort(times.begin(), times.end());
  return times;
}

}  // namespace

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  RunningCaptions captions(true);
  for (int line = 0; line < kLines; ++line) captions.speak(line);

  const std::vector<double> drafts = sortedMicroseconds([&captions](int sample) {
    captions.draft(sample % 2 == 0 ? QStringLiteral("an unfinished phrase")
                                   : QStringLiteral("an unfinished phrase grows"));
  });
  std::printf("draft_event_us %.3f us\n", drafts[kSamples / 2]);

  // From the final result through the queue to the stored translation, which completes at once.
  int translated = 0;
  CaptionViewModel* const model = captions.model.get();
  QObject::connect(model, &CaptionViewModel::translationChanged, model,
                   [&translated] { ++translated; });
  const std::vector<double> translations = sortedMicroseconds([&captions, &translated](int) {
    const int before = translated;
    captions.final(QStringLiteral("One more line."));
    while (translated == before) QCoreApplication::processEvents();
  });
  std::printf("translator_overhead_ms %.4f ms\n", translations[kSamples / 2] / 1000);
  std::printf("translator_overhead_p99_ms %.4f ms\n", translations[kSamples * 99 / 100] / 1000);
  return 0;
}
