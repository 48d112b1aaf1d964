// SPDX-License-Identifier: GPL-3.0-or-later
#include "audio/audio_feeder.h"

#include "support/allocation_count.h"
#include "support/manual_clock.h"
#include "support/signals.h"
#include "support/suite.h"

using namespace velun;
using namespace std::chrono_literals;
using test::amplitudeAt;
using test::channelOf;
using test::toneBuffer;

namespace {

constexpr auto float32 = AudioFormat::Sample::float32;
const AudioFormat speech{float32, 16'000, 1, true};
const AudioFormat stereo{float32, 48'000, 2, true};

/// A feeder and the far end of its stream.
struct Feed {
  explicit Feed(const AudioFormat& format = speech) : feeder(format, stream, clock) {}

  /// Takes everything that was handed over, joined.
  std::vector<float> take() {
    std::vector<float> all;
    while (auto input = stream->tryNext()) {
      const std::vector<float> samples = channelOf(input->buffer, 0);
      all.insert(all.end(), samples.begin(), samples.end());
    }
    return all;
  }

  test::ManualClock clock;
  std::shared_ptr<AnalyzerInputStream> stream = std::make_shared<AnalyzerInputStream>();
  AudioFeeder feeder;
};

}  // namespace

class AudioFeederTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void aNewFeederHasFedNothing() {
    test::ManualClock clock;
    clock.advance(5s);
    const AudioFeeder feeder(speech, std::make_shared<AnalyzerInputStream>(), clock);
    QCOMPARE(feeder.lastFeed(), 5.0);
    QVERIFY(!feeder.hasFedAudio());
    QVERIFY(feeder.bands().empty());
  }

  void theCapacityIsTheWholeFramesAndSixteen() {
    const Feed feed;
    QCOMPARE(feed.feeder.outputCapacity(4800, 48'000), std::size_t(1616));
    QCOMPARE(feed.feeder.outputCapacity(4801, 48'000), std::size_t(1616));
    QCOMPARE(feed.feeder.outputCapacity(1024, 44'100), std::size_t(371 + 16));
    QCOMPARE(feed.feeder.outputCapacity(0, 48'000), std::size_t(16));
  }

  void convertedAudioGoesToTheAnalyzer() {
    Feed feed;
    for (std::size_t start = 0; start < 48'000; start += 4800) {
      feed.feeder.feed(toneBuffer(stereo, 1000, 0.5F, 4800, start));
    }
    QVERIFY(feed.feeder.hasFedAudio());
    const std::vector<float> samples = feed.take();
    QVERIFY(samples.size() > 15'000 && samples.size() <= 16'000);
    const auto middle = std::span(samples).subspan(4000, 8000);
    QVERIFY(std::abs(amplitudeAt(middle, 1000, 16'000) - 0.5) < 0.005);
  }

  void noHandedOverBufferExceedsItsCapacity() {
    Feed feed;
    for (std::size_t start = 0; start < 96'000; start += 4800) {
      feed.feeder.feed(toneBuffer(stereo, 1000, 0.5F, 4800, start));
      while (const auto input = feed.stream->tryNext()) {
        QCOMPARE(input->buffer.frameCapacity(), std::size_t(1616));
        QVERIFY(input->buffer.frameLength() > 0);
        QVERIFY(input->buffer.format() == speech);
      }
    }
  }

  void everyArrivalIsNoted() {
    Feed feed;
    feed.clock.advance(2s);
    feed.feeder.feed(toneBuffer(stereo, 1000, 0.5F, 4800));
    QCOMPARE(feed.feeder.lastFeed(), 2.0);
    feed.clock.advance(500ms);
    feed.feeder.feed(PcmBuffer({float32, 0, 0, true}, 0));
    QCOMPARE(feed.feeder.lastFeed(), 2.5);
  }

  void aBufferThatCannotBeConvertedOnlyCountsAsArrived() {
    Feed feed;
    feed.clock.advance(1s);
    feed.feeder.feed(PcmBuffer({float32, 0, 2, true}, 100));
    feed.feeder.feed(PcmBuffer({float32, 48'000, 0, true}, 100));
    QCOMPARE(feed.feeder.lastFeed(), 1.0);
    QVERIFY(!feed.feeder.hasFedAudio());
    QVERIFY(feed.feeder.bands().empty());
    QVERIFY(!feed.stream->tryNext());
  }

  void aConversionWithoutFramesChangesNothingElse() {
    Feed feed;
    feed.clock.advance(1s);
    // So few frames stay in the converter's filter.
    feed.feeder.feed(toneBuffer(stereo, 1000, 0.5F, 3));
    QCOMPARE(feed.feeder.lastFeed(), 1.0);
    QVERIFY(!feed.feeder.hasFedAudio());
    QVERIFY(feed.feeder.bands().empty());
    QVERIFY(!feed.stream->tryNext());
  }

  void anEmptyBufferChangesNothingElse() {
    Feed feed;
    feed.feeder.feed(PcmBuffer(stereo, 100));
    QVERIFY(!feed.feeder.hasFedAudio());
    QVERIFY(!feed.stream->tryNext());
  }

  void aChangeOfFormatTakesANewConverter() {
    Feed feed;
    const AudioFormat other{AudioFormat::Sample::int16, 44'100, 6, false};
    for (std::size_t start = 0; start < 48'000; start += 4800) {
      feed.feeder.feed(toneBuffer(stereo, 1000, 0.5F, 4800, start));
    }
    feed.take();
    for (std::size_t start = 0; start < 44'100; start += 4410) {
      feed.feeder.feed(toneBuffer(other, 3000, 0.25F, 4410, start));
    }
    const std::vector<float> samples = feed.take();
    QVERIFY(samples.size() > 15'000 && samples.size() <= 16'000);
    const auto middle = std::span(samples).subspan(4000, 8000);
    QVERIFY(std::abs(amplitudeAt(middle, 3000, 16'000) - 0.25) < 0.005);
    QVERIFY(amplitudeAt(middle, 1000, 16'000) < 1e-3);
  }

  void theAnalyzerMayAskForSixteenBits() {
    Feed feed({AudioFormat::Sample::int16, 16'000, 1, true});
    for (std::size_t start = 0; start < 48'000; start += 1024) {
      feed.feeder.feed(toneBuffer(stereo, 1000, 0.5F, 1024, start));
    }
    QCOMPARE(feed.feeder.bands().size(), std::size_t(11));
    const std::vector<float> samples = feed.take();
    const auto middle = std::span(samples).subspan(4000, 8000);
    QVERIFY(std::abs(amplitudeAt(middle, 1000, 16'000) - 0.5) < 0.005);
  }

  void bandsFollowTheSound() {
    Feed feed;
    for (std::size_t start = 0; start < 48'000; start += 1024) {
      feed.feeder.feed(toneBuffer(stereo, 1250, 0.5F, 1024, start));
    }
    const std::vector<float> loud = feed.feeder.bands();
    QCOMPARE(loud.size(), std::size_t(11));
    QCOMPARE(std::ranges::max_element(loud) - loud.begin(), std::ptrdiff_t(6));
    for (std::size_t start = 0; start < 48'000; start += 1024) {
      feed.feeder.feed(toneBuffer(stereo, 1000, 0, 1024));
    }
    for (const float level : feed.feeder.bands()) QVERIFY(level < -100);
  }

  void audioAfterTheEndOfTheStreamIsDropped() {
    Feed feed;
    feed.stream->finish();
    feed.feeder.feed(toneBuffer(stereo, 1000, 0.5F, 4800));
    QVERIFY(!feed.stream->tryNext());
  }

  void onlyWhatIsHandedOverIsAllocated() {
    if (!test::canCountAllocations()) QSKIP("a sanitizer manages the memory");
    Feed feed;
    const PcmBuffer buffer = toneBuffer(stereo, 1000, 0.5F, 1024);
    for (int i = 0; i < 200; ++i) {
      feed.feeder.feed(buffer);
      feed.stream->tryNext();
    }
    constexpr int feeds = 600;
    const std::size_t before = test::allocationCount();
    for (int i = 0; i < feeds; ++i) {
      feed.feeder.feed(buffer);
      feed.stream->tryNext();
    }
    const std::size_t made = test::allocationCount() - before;
    // A buffer each, and now and then a block of the stream's queue.
    QVERIFY2(made >= feeds && made <= feeds + feeds / 4, qPrintable(QString::number(made)));
  }
};

QTEST_GUILESS_MAIN(AudioFeederTest)
#include "audio_feeder_test.moc"
