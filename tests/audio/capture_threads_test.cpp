// SPDX-License-Identifier: GPL-3.0-or-later
#include "audio/audio_feeder.h"
#include "audio/system_audio.h"
#include "platform/foundation/system_clock.h"
#include "support/suite.h"
#include "support/threaded_audio_hardware.h"

#include <thread>

using namespace velun;
using namespace velun::test;

/// The capture thread, the decoder's and the main one at once; run under the thread sanitizer.
class CaptureThreadsTest final : public Suite {
  Q_OBJECT

 private Q_SLOTS:
  void capturedAudioIsReadWhileItFlows() {
    const AudioFormat speech{AudioFormat::Sample::float32, 16'000, 1, true};
    const SystemClock clock;
    for (int run = 0; run < 5; ++run) {
      const auto stream = std::make_shared<AnalyzerInputStream>();
      AudioFeeder feeder(speech, stream, clock);
      std::size_t decoded = 0;
      std::thread decoder([&] {
        while (const auto input = stream->next()) decoded += input->buffer.frameLength();
      });
      SystemAudio source(
          std::make_unique<ThreadedAudioHardware>(std::make_shared<AudioHardwareScript>()));
      const double start = feeder.lastFeed();
      source.start([&feeder](const PcmBuffer& buffer) { feeder.feed(buffer); });
      QTRY_COMPARE_WITH_TIMEOUT(feeder.bands().size(), std::size_t(11), 20'000);
      VERIFY_SOON(feeder.bands()[6] > 20);
      QVERIFY(feeder.hasFedAudio());
      QVERIFY(feeder.lastFeed() > start);
      source.stop();
      stream->finish();
      decoder.join();
      QVERIFY(decoded >= SpectrumBands::blockSize);
    }
  }
};

QTEST_GUILESS_MAIN(CaptureThreadsTest)
#include "capture_threads_test.moc"
