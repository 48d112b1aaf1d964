// SPDX-License-Identifier: GPL-3.0-or-later
#include "audio/audio_feeder.h"

#include "support/allocation_count.h"
#include "support/manual_clock.h"
#include "support/signals.h"
#include "support/suite.h"

#include <algorithm>

using namespace velun;
using namespace std::chrono_literals;
using test::tone;

namespace {

/// A feeder and the stream that it writes to.
struct Feed {
  void feedSecond(double frequency, float amplitude) {
    for (std::size_t start = 0; start < 16'000; start += 400) {
      feeder.feed(tone(frequency, amplitude, 400, start));
    }
  }

  /// Takes all samples from the stream, joined.
  std::vector<float> take() {
    std::vector<float> all;
    while (auto input = stream->tryNext()) {
      all.insert(all.end(), input->samples.begin(), input->samples.end());
    }
    return all;
  }

  test::ManualClock clock;
  std::shared_ptr<SpeechInput> stream = std::make_shared<SpeechInput>();
  AudioFeeder feeder{stream, clock};
};

}  // namespace

class AudioFeederTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void newFeederHasFedNothing() {
    test::ManualClock clock;
    clock.advance(5s);
    const AudioFeeder feeder(std::make_shared<SpeechInput>(), clock);
    QCOMPARE(feeder.lastFeed(), 5.0);
    QVERIFY(!feeder.hasFedAudio());
    QVERIFY(feeder.bands().empty());
  }

  void samplesReachTheRecognizerUnchanged() {
    Feed feed;
    const std::vector<float> samples = tone(1000, 0.5F, 700);
    feed.feeder.feed(std::span(samples).first(300));
    feed.feeder.feed(std::span(samples).subspan(300));
    QVERIFY(feed.feeder.hasFedAudio());
    QCOMPARE(feed.take(), samples);
  }

  void everyCallIsNoted() {
    Feed feed;
    feed.clock.advance(2s);
    feed.feeder.feed(tone(1000, 0.5F, 400));
    QCOMPARE(feed.feeder.lastFeed(), 2.0);
    feed.clock.advance(500ms);
    feed.feeder.feed({});
    QCOMPARE(feed.feeder.lastFeed(), 2.5);
  }

  void noSamplesAreOnlyNoted() {
    Feed feed;
    feed.feeder.feed({});
    QVERIFY(!feed.feeder.hasFedAudio());
    QVERIFY(feed.feeder.bands().empty());
    QVERIFY(!feed.stream->tryNext());
  }

  void bandsFollowTheSound() {
    Feed feed;
    feed.feedSecond(1250, 0.5F);
    const std::vector<float> loud = feed.feeder.bands();
    QCOMPARE(loud.size(), std::size_t(11));
    QCOMPARE(std::ranges::max_element(loud) - loud.begin(), std::ptrdiff_t(6));
    feed.feedSecond(1250, 0);
    for (const float level : feed.feeder.bands()) QVERIFY(level < -100);
  }

  void samplesAfterTheEndOfTheStreamAreDropped() {
    Feed feed;
    feed.stream->finish();
    feed.feeder.feed(tone(1000, 0.5F, 400));
    QVERIFY(!feed.stream->tryNext());
  }

  void allocatesOnlyWhatItPassesOn() {
    if (!test::canCountAllocations()) QSKIP("a sanitizer manages the memory");
    Feed feed;
    const std::vector<float> samples = tone(1000, 0.5F, 341);
    for (int i = 0; i < 200; ++i) {
      feed.feeder.feed(samples);
      feed.stream->tryNext();
    }
    constexpr int feeds = 600;
    const std::size_t before = test::allocationCount();
    for (int i = 0; i < feeds; ++i) {
      feed.feeder.feed(samples);
      feed.stream->tryNext();
    }
    const std::size_t made = test::allocationCount() - before;
    // One allocation for each copy, and occasionally one for the queue.
    QVERIFY2(made >= feeds && made <= feeds + feeds / 4, qPrintable(QString::number(made)));
  }
};

QTEST_GUILESS_MAIN(AudioFeederTest)
#include "audio_feeder_test.moc"
