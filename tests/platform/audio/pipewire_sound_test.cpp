// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/audio/linux/pipewire_audio_platform.h"
#include "platform/foundation/system_clock.h"
#include "support/await.h"
#include "support/playback_stream.h"
#include "support/private_pipewire.h"
#include "support/recorder.h"
#include "support/suite.h"

#include <atomic>
#include <numbers>
#include <semaphore>

using namespace velun;
using namespace velun::test;

namespace {

constexpr int all = PlaybackStream::everyChannel;
constexpr int center = 2;
constexpr float half = 0.5F;
constexpr double inBothChannels = 1 / std::numbers::sqrt2;

/// A second of a tone, once it is allowed to begin; silence before and after.
struct OneSecond {
  PlaybackStream::Fill fill() {
    return [this, tone = PlaybackStream::tone(1000, 48'000, half)](std::span<float> frames) {
      const std::size_t left = isAllowed ? 48'000 - std::min<std::size_t>(played, 48'000) : 0;
      tone(frames.first(std::min(left, frames.size())));
      if (left < frames.size()) std::ranges::fill(frames.subspan(left), 0.0F);
      played += std::min(left, frames.size());
      if (played >= 24'000 && !isHalfOver.exchange(true)) halfOver.release();
    };
  }

  std::atomic<bool> isAllowed = false;
  std::atomic<std::size_t> played = 0;
  std::atomic<bool> isHalfOver = false;
  std::binary_semaphore halfOver{0};
};

}  // namespace

/// Captures outputs and players of all kinds.
class PipeWireSoundTest final : public Suite {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { QVERIFY(server_.start()); }

  void tonesKeepTheirFrequencyAndLevel_data() {
    QTest::addColumn<int>("outputRate");
    QTest::addColumn<QString>("outputChannels");
    QTest::addColumn<PlaybackFormat>("played");
    QTest::addColumn<int>("channel");
    QTest::addColumn<double>("gain");
    const QString surround = "FL FR FC LFE RL RR";
    QTest::newRow("48 kHz stereo, float")
        << 48'000 << "FL FR" << PlaybackFormat{true, 48'000, 2} << all << 1.0;
    QTest::newRow("48 kHz stereo, right only")
        << 48'000 << "FL FR" << PlaybackFormat{true, 48'000, 2} << 1 << 1.0;
    QTest::newRow("44.1 kHz mono, 16 bits")
        << 44'100 << "MONO" << PlaybackFormat{false, 44'100, 1} << all << 1.0;
    QTest::newRow("96 kHz stereo, 16 bits")
        << 96'000 << "FL FR" << PlaybackFormat{false, 96'000, 2} << all << 1.0;
    QTest::newRow("192 kHz 5.1, float, front left")
        << 192'000 << surround << PlaybackFormat{true, 192'000, 6} << 0 << 1.0;
    QTest::newRow("48 kHz 5.1, 16 bits, centre")
        << 48'000 << surround << PlaybackFormat{false, 48'000, 6} << center << inBothChannels;
    QTest::newRow("48 kHz 5.1, rear left")
        << 48'000 << surround << PlaybackFormat{true, 48'000, 6} << 4 << inBothChannels;
    QTest::newRow("48 kHz without positions, float")
        << 48'000 << "AUX0 AUX1" << PlaybackFormat{true, 48'000, 2} << all << 1.0;
  }
  void tonesKeepTheirFrequencyAndLevel() {
    QFETCH(int, outputRate);
    QFETCH(QString, outputChannels);
    QFETCH(PlaybackFormat, played);
    QFETCH(int, channel);
    QFETCH(double, gain);
    QVERIFY(server_.addSink("output", outputRate, outputChannels));
    QVERIFY(server_.setDefaultSink("output"));

    Recorder recorder;
    const auto source = platform_.makeSource({});
    await(source->start(recorder.handler()));
    const double expected = gain * half;
    {
      const PlaybackStream player(played, {}, PlaybackStream::tone(1000, played.sampleRate, half),
                                  channel);
      VERIFY_SOON(std::abs(recorder.amplitudeAt(1000, 3'200) - expected) < 0.02 * expected);
      // Nothing but the tone.
      VERIFY_SOON(std::abs(recorder.level(3'200) * std::numbers::sqrt2 - expected) <
                  0.02 * expected);
    }
    source->stop();
    QVERIFY(server_.remove("output"));
  }

  void outputWithAnotherFormatIsFollowed() {
    QVERIFY(server_.addSink("speakers", 44'100));
    QVERIFY(server_.addSink("receiver", 192'000, "FL FR FC LFE RL RR"));
    QVERIFY(server_.setDefaultSink("speakers"));
    Recorder recorder;
    const auto source = platform_.makeSource({});
    await(source->start(recorder.handler()));
    const PlaybackStream speakers({false, 44'100, 2}, "speakers",
                                  PlaybackStream::tone(1000, 44'100, half));
    const PlaybackStream receiver({true, 48'000, 6}, "receiver",
                                  PlaybackStream::tone(3000, 48'000, half));
    VERIFY_SOON(recorder.hearsOnly(1000, 3000));
    QVERIFY(server_.setDefaultSink("receiver"));
    VERIFY_SOON(recorder.hearsOnly(3000, 1000));
    QVERIFY(server_.setDefaultSink("speakers"));
    VERIFY_SOON(recorder.hearsOnly(1000, 3000));
    source->stop();
    QVERIFY(server_.remove("speakers"));
    QVERIFY(server_.remove("receiver"));
  }

  void soundFromBeforeTheStartIsCaptured() {
    QVERIFY(server_.addSink("output"));
    QVERIFY(server_.setDefaultSink("output"));
    const PlaybackStream player({}, {}, PlaybackStream::tone(440, 48'000, half));
    VERIFY_SOON(PrivatePipeWire::stateOf("output") == "running");
    Recorder recorder;
    const auto source = platform_.makeSource({});
    await(source->start(recorder.handler()));
    VERIFY_SOON(std::abs(recorder.amplitudeAt(440, 3'200) - half) < 0.01);
    source->stop();
    QVERIFY(server_.remove("output"));
  }

  void soundSurvivesAThreadThatIsLate() {
    QVERIFY(server_.addSink("output"));
    QVERIFY(server_.setDefaultSink("output"));
    OneSecond sound;
    const PlaybackStream player({}, {}, sound.fill());
    std::atomic<double> energy = 0;
    bool wasLate = false;
    const auto source = platform_.makeSource({});
    std::atomic<bool> isHeard = false;
    await(source->start([&](std::span<const float> samples) {
      isHeard = true;
      for (const float sample : samples) energy += double(sample) * double(sample);
      // As if the processor was busy with something else for some 0.4 s.
      const bool isLate = !wasLate && energy > 100;
      if (!isLate) return;
      wasLate = true;
      if (!sound.halfOver.try_acquire_for(std::chrono::seconds(10))) qFatal("Nothing is played");
    }));
    VERIFY_SOON(isHeard);
    sound.isAllowed = true;
    const double expected = 16'000 * half * half / 2;
    VERIFY_SOON(energy > 0.98 * expected);
    QVERIFY(wasLate);
    source->stop();
    QVERIFY(server_.remove("output"));
  }

 private:
  PrivatePipeWire server_;
  SystemClock clock_;
  PipeWireAudioPlatform platform_{clock_};
};

QTEST_GUILESS_MAIN(PipeWireSoundTest)
#include "pipewire_sound_test.moc"
