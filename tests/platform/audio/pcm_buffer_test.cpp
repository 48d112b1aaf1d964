// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/audio/pcm_buffer.h"

#include "support/suite.h"

#include <vector>

using namespace velun;

namespace {

constexpr auto float32 = AudioFormat::Sample::float32;
constexpr auto int16 = AudioFormat::Sample::int16;

}  // namespace

class PcmBufferTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void aNewBufferIsSilentRoom() {
    PcmBuffer buffer({float32, 48'000, 2, true}, 4);
    QCOMPARE(buffer.frameCapacity(), std::size_t(4));
    QCOMPARE(buffer.frameLength(), std::size_t(0));
    buffer.setFrameLength(4);
    QCOMPARE(buffer.floatSamples().size(), std::size_t(8));
    for (const float sample : buffer.floatSamples()) QCOMPARE(sample, 0.0F);
  }

  void aViewHoldsWholeFramesAndCopiesNothing() {
    const std::vector<float> samples = {1, 2, 3, 4, 5};
    PcmBuffer view = PcmBuffer::view({float32, 48'000, 2, true}, std::as_bytes(std::span(samples)));
    QCOMPARE(view.frameLength(), std::size_t(2));
    QCOMPARE(view.floatChannel(0), samples.data());
    QVERIFY(!view.mutableBytes());
  }

  void aViewWithoutChannelsHoldsNothing() {
    const std::vector<float> samples(4);
    const PcmBuffer view =
        PcmBuffer::view({float32, 48'000, 0, true}, std::as_bytes(std::span(samples)));
    QCOMPARE(view.frameLength(), std::size_t(0));
  }

  void samplesOfTheOtherKindAreNotThere() {
    const PcmBuffer floats({float32, 16'000, 1, true}, 4);
    const PcmBuffer words({int16, 16'000, 1, true}, 4);
    QVERIFY(floats.floatChannel(0) && !floats.int16Channel(0));
    QVERIFY(words.int16Channel(0) && !words.floatChannel(0));
    QVERIFY(floats.int16Samples().empty());
    QVERIFY(words.floatSamples().empty());
  }

  void channelsLieFrameByFrameOrOneAfterTheOther() {
    const PcmBuffer frames({int16, 16'000, 3, true}, 5);
    QCOMPARE(frames.stride(), std::size_t(3));
    QCOMPARE(frames.int16Channel(2) - frames.int16Channel(0), std::ptrdiff_t(2));
    const PcmBuffer planes({int16, 16'000, 3, false}, 5);
    QCOMPARE(planes.stride(), std::size_t(1));
    QCOMPARE(planes.int16Channel(2) - planes.int16Channel(0), std::ptrdiff_t(10));
  }
};

QTEST_GUILESS_MAIN(PcmBufferTest)
#include "pcm_buffer_test.moc"
