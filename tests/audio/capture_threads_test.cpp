// SPDX-License-Identifier: GPL-3.0-or-later
#include "audio/audio_feeder.h"
#include "platform/foundation/system_clock.h"
#include "support/signals.h"
#include "support/suite.h"

#include <atomic>
#include <thread>

using namespace velun;
using namespace velun::test;

/// The capture thread, the decode thread and the main thread at the same time. Meant for the thread
/// sanitizer.
class CaptureThreadsTest final : public Suite {
  Q_OBJECT

 private Q_SLOTS:
  void capturedAudioIsReadWhileItFlows() {
    const SystemClock clock;
    for (int run = 0; run < 5; ++run) {
      const auto stream = std::make_shared<SpeechInput>();
      AudioFeeder feeder(stream, clock);
      std::size_t decoded = 0;
      std::thread decoder([&] {
        while (const auto input = stream->next()) decoded += input->samples.size();
      });
      const double start = feeder.lastFeed();
      std::atomic<bool> isCapturing = true;
      std::thread capture([&] {
        const std::vector<float> samples = tone(1250, 0.5F, 341);
        while (isCapturing) feeder.feed(samples);
      });
      QTRY_COMPARE_WITH_TIMEOUT(feeder.bands().size(), std::size_t(11), 20'000);
      VERIFY_SOON(feeder.bands()[6] > 20);
      QVERIFY(feeder.hasFedAudio());
      QVERIFY(feeder.lastFeed() > start);
      isCapturing = false;
      capture.join();
      stream->finish();
      decoder.join();
      QVERIFY(decoded >= SpectrumBands::blockSize);
    }
  }
};

QTEST_GUILESS_MAIN(CaptureThreadsTest)
#include "capture_threads_test.moc"
