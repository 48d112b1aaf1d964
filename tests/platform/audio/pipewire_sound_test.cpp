// SPDX-License-Identifier: GPL-3.0-or-later
#include "audio/system_audio.h"
#include "platform/audio/linux/pipewire_audio_platform.h"
#include "platform/foundation/failure.h"
#include "platform/foundation/system_clock.h"
#include "support/playback_stream.h"
#include "support/private_pipewire.h"
#include "support/recorder.h"
#include "support/suite.h"

using namespace velun;
using namespace velun::test;

namespace {

constexpr auto float32 = AudioFormat::Sample::float32;
constexpr auto int16 = AudioFormat::Sample::int16;
const AudioFormat stereo{float32, 48'000, 2, true};
constexpr int patience = 20000;

}  // namespace

/// What reaches the program from outputs and players of all kinds.
class PipeWireSoundTest final : public Suite {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    QVERIFY(server_.start());
    QVERIFY(server_.addSink("speakers"));
    QVERIFY(server_.awaitDefaultSink("speakers"));
  }

  void tonesArriveFromAnyPlayer_data() {
    QTest::addColumn<double>("rate");
    QTest::addColumn<int>("channelCount");
    QTest::addColumn<bool>("isFloat");
    QTest::newRow("44.1 kHz mono, 16 bits") << 44'100.0 << 1 << false;
    QTest::newRow("48 kHz stereo, float") << 48'000.0 << 2 << true;
    QTest::newRow("96 kHz stereo, 16 bits") << 96'000.0 << 2 << false;
    QTest::newRow("192 kHz 5.1, float") << 192000.0 << 2 << true;
  }
  void tonesArriveFromAnyPlayer() {
    QFETCH(double, rate);
    QFETCH(int, channelCount);
    QFETCH(bool, isFloat);
    const AudioFormat format{isFloat ? float32 : int16, rate, channelCount, true};
    Recorder recorder;
    SystemAudio source(platform_.makeHardware(nullptr));
    source.start(recorder.handler());
    const PlaybackStream player(format, {}, PlaybackStream::tone(1000, rate, 0.25F));
    QTRY_VERIFY_WITH_TIMEOUT(std::abs(recorder.amplitudeAt(1000, 9'600) - 0.25) < 0.01, patience);
    QVERIFY(recorder.format() == stereo);
    source.stop();
  }

 private:
  PrivatePipeWire server_;
  SystemClock clock_;
  PipeWireAudioPlatform platform_{clock_};
};

QTEST_GUILESS_MAIN(PipeWireSoundTest)
#include "pipewire_sound_test.moc"
