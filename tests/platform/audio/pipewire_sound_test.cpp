// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/audio/linux/pipewire_audio_platform.h"
#include "platform/foundation/system_clock.h"
#include "support/await.h"
#include "support/playback_stream.h"
#include "support/private_pipewire.h"
#include "support/recorder.h"
#include "support/suite.h"

#include <numbers>

using namespace velun;
using namespace velun::test;

namespace {

constexpr auto float32 = AudioFormat::Sample::float32;
constexpr auto int16 = AudioFormat::Sample::int16;
constexpr int center = 2;
constexpr double half = 0.5;
constexpr double inBothEars = 1 / std::numbers::sqrt2;

}  // namespace

/// Captures outputs and players of all kinds.
class PipeWireSoundTest final : public Suite {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { QVERIFY(server_.start()); }

  void tonesArriveWithTheirFrequencyAndLevel_data() {
    QTest::addColumn<int>("outputRate");
    QTest::addColumn<QString>("outputChannels");
    QTest::addColumn<AudioFormat>("played");
    QTest::addColumn<int>("channel");
    QTest::addColumn<double>("gain");
    const int all = PlaybackStream::everyChannel;
    QTest::newRow("48 kHz stereo, float")
        << 48'000 << "FL FR" << format(float32, 48'000, 2) << all << 1.0;
    QTest::newRow("44.1 kHz mono, 16 bits")
        << 44'100 << "MONO" << format(int16, 44'100, 1) << all << 1.0;
    QTest::newRow("96 kHz stereo, 16 bits")
        << 96'000 << "FL FR" << format(int16, 96'000, 2) << all << 1.0;
    QTest::newRow("192 kHz 5.1, float, front left")
        << 192'000 << "FL FR FC LFE RL RR" << format(float32, 192'000, 6) << 0 << 1.0;
    QTest::newRow("48 kHz 5.1, 16 bits, centre")
        << 48'000 << "FL FR FC LFE RL RR" << format(int16, 48'000, 6) << center << inBothEars;
    QTest::newRow("48 kHz without positions, float")
        << 48'000 << "AUX0 AUX1" << format(float32, 48'000, 2) << all << 1.0;
  }
  void tonesArriveWithTheirFrequencyAndLevel() {
    QFETCH(int, outputRate);
    QFETCH(QString, outputChannels);
    QFETCH(AudioFormat, played);
    QFETCH(int, channel);
    QFETCH(double, gain);
    QVERIFY(server_.addSink("output", outputRate, outputChannels));
    QVERIFY(server_.setDefaultSink("output"));

    Recorder recorder;
    const auto source = platform_.makeSource({});
    await(source->start(recorder.handler()));
    const double expected = half * gain;
    {
      const PlaybackStream player(played, {}, PlaybackStream::tone(1000, played.sampleRate, half),
                                  channel);
      VERIFY_SOON(std::abs(recorder.amplitudeAt(1000, 9'600) - expected) < 0.02 * expected);
      // Nothing but the tone.
      VERIFY_SOON(std::abs(recorder.level(9'600) * std::numbers::sqrt2 - expected) <
                  0.02 * expected);
    }
    QCOMPARE(recorder.format().channelCount, 2);
    QVERIFY(recorder.format().sample == float32);
    source->stop();
    QVERIFY(server_.remove("output"));
  }

  void whatIsPlayedBeforeTheStartIsHeardToo() {
    QVERIFY(server_.addSink("output"));
    QVERIFY(server_.setDefaultSink("output"));
    const AudioFormat played = format(float32, 48'000, 2);
    const PlaybackStream player(played, {}, PlaybackStream::tone(440, 48'000, half));
    VERIFY_SOON(PrivatePipeWire::stateOf("output") == "running");
    Recorder recorder;
    const auto source = platform_.makeSource({});
    await(source->start(recorder.handler()));
    VERIFY_SOON(std::abs(recorder.amplitudeAt(440, 9'600) - half) < 0.01);
    source->stop();
    QVERIFY(server_.remove("output"));
  }

 private:
  static AudioFormat format(AudioFormat::Sample sample, double rate, int channelCount) {
    return {sample, rate, channelCount, true};
  }

  PrivatePipeWire server_;
  SystemClock clock_;
  PipeWireAudioPlatform platform_{clock_};
};

QTEST_GUILESS_MAIN(PipeWireSoundTest)
#include "pipewire_sound_test.moc"
