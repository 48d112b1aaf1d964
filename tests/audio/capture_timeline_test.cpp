// SPDX-License-Identifier: GPL-3.0-or-later
#include "audio/capture_timeline.h"

#include "support/suite.h"

#include <cstdlib>

using namespace velun;

namespace {

constexpr std::size_t kChunk = 320;
constexpr double kChunkSeconds = 0.02;

/// Places calls with a chunk each, the nth of which is late by `lateness(n)` seconds. Returns how
/// far the last position is from the time when its sound was heard, in samples.
template <typename Lateness>
std::int64_t errorAfter(CaptureTimeline& timeline, int first, int count, const Lateness& lateness) {
  std::int64_t error = 0;
  for (int n = first; n < first + count; ++n) {
    const double time = 100 + (n + 1) * kChunkSeconds + lateness(n);
    error = timeline.place(time, kChunk) - (100 * 16'000 + n * std::int64_t{kChunk});
  }
  return error;
}

}  // namespace

/// The positions of captured samples.
class CaptureTimelineTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void samplesOfPunctualCallsFollowEachOther() {
    CaptureTimeline timeline;
    QCOMPARE(errorAfter(timeline, 0, 500, [](int) { return 0.0; }), 0);
  }

  void callsThatAreLateNowAndThenChangeNothing() {
    CaptureTimeline timeline;
    errorAfter(timeline, 0, 1, [](int) { return 0.0; });
    for (int n = 1; n < 400; ++n) {
      const double late = n % 7 == 0 ? 0.0 : 0.01 * (n % 20);
      const std::int64_t error = errorAfter(timeline, n, 1, [late](int) { return late; });
      QCOMPARE(error, 0);
    }
  }

  void aLateFirstCallIsMadeGood() {
    CaptureTimeline timeline;
    const std::int64_t error =
        errorAfter(timeline, 0, 20, [](int n) { return n == 0 ? 0.15 : 0.0; });
    QCOMPARE(error, 0);
  }

  void aGapIsKept() {
    CaptureTimeline timeline;
    errorAfter(timeline, 0, 100, [](int) { return 0.0; });
    QCOMPARE(errorAfter(timeline, 600, 1, [](int) { return 0.0; }), 0);
  }

  void callsAfterAStallComeAtOnce() {
    CaptureTimeline timeline;
    errorAfter(timeline, 0, 100, [](int) { return 0.0; });
    // The sound of 0.4 s comes in the end, at one time.
    errorAfter(timeline, 100, 20, [](int n) { return (119 - n) * kChunkSeconds; });
    QCOMPARE(errorAfter(timeline, 120, 10, [](int) { return 0.0; }), 0);
  }

  void aClockThatDriftsIsFollowed() {
    // 200 millionths, more than sound cards have.
    const auto drift = [](int n) {
      return 0.000'2 * n * kChunkSeconds;
    };
    CaptureTimeline timeline;
    std::int64_t largest = 0;
    for (int n = 0; n < 50'000; n += 100) {
      const std::int64_t late = std::llround(16'000 * drift(n + 99));
      largest = std::max(largest, std::abs(errorAfter(timeline, n, 100, drift) - late));
    }
    // 0.2 s in all, of which no more than the tolerance and what two seconds add is there at once.
    QCOMPARE_LE(largest, 340);
  }
};

QTEST_GUILESS_MAIN(CaptureTimelineTest)
#include "capture_timeline_test.moc"
