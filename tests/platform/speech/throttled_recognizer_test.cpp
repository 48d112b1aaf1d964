// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/audio_backlog.h"
#include "platform/speech/neural_fixture.h"
#include "support/await.h"
#include "support/suite.h"
#include "support/throttled_captions.h"

#include <malloc.h>

using namespace velun;
using namespace velun::test;

namespace {

/// Bytes in use on the heap of this process.
std::size_t heapBytes() {
  malloc_trim(0);
  const struct mallinfo2 info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

constexpr std::size_t kMegabyte = 1'000'000;
/// Seconds. On a busy machine, buffers and the checks between them are late.
constexpr double kMaxBacklog = AudioBacklog::kMaxSeconds + 3;

}  // namespace

/// A helper program that is slower than the speech, through the whole engine in real time.
class ThrottledRecognizerTest final : public test::Suite {
  Q_OBJECT

  QStringList statuses_;
  QStringList finals_;
  std::optional<QString> failure_;

  std::unique_ptr<ThrottledCaptions> start(double slowness) {
    const std::vector<float> sound =
        test::sound("h11.wav") + silence(0.8) + test::sound("h01.wav") + silence(0.8);
    auto captions = std::make_unique<ThrottledCaptions>(transducer(), slowness, sound);
    connect(&captions->engine, &SpeechRecognizing::eventOccurred, this,
            [this](const SpeechRecognitionEvent& event) {
              if (const auto* status = std::get_if<StatusEvent>(&event)) {
                statuses_.append(status->text.value_or("-"));
              } else if (const auto* final = std::get_if<FinalEvent>(&event)) {
                finals_.append(final->text);
              } else if (const auto* failed = std::get_if<FailureEvent>(&event)) {
                failure_ = failed->message;
              }
            });
    await(captions->engine.start("en_US", {}));
    captions->startPlaying();
    return captions;
  }

 private Q_SLOTS:
  void init() {
    Suite::init();
    QVERIFY2(hasRecognitionLibrary(), "The recognition library is missing: run scripts/setup.");
    statuses_.clear();
    finals_.clear();
    failure_.reset();
  }

  void lagIsShownAndSkippedAndAStopIsShort() {
    const auto captions = start(6);
    QTRY_VERIFY_WITH_TIMEOUT(!statuses_.filter("Skipped").isEmpty(), 60'000);
    QVERIFY(statuses_.contains("Recognition is falling behind"));
    QTRY_VERIFY_WITH_TIMEOUT(!statuses_.filter("Choose a smaller one in Settings.").isEmpty(),
                             60'000);
    QTRY_VERIFY_WITH_TIMEOUT(!finals_.isEmpty(), 60'000);
    QVERIFY2(captions->longestBacklog() <= kMaxBacklog,
             qPrintable(QString::number(captions->longestBacklog())));
    captions->stopPlaying();
    await(captions->engine.stop());
    QCOMPARE(failure_,
             std::optional(QString("Captions stopped before the last words were recognized.")));
  }

  void halfOfRealTimeForLong() {
    bool isSet = false;
    const double seconds = qEnvironmentVariable("VELUN_THROTTLED_TEST_SECONDS").toDouble(&isSet);
    if (!isSet) QSKIP("It takes ten minutes: ctest -R throttled_recognizer_long");
    const auto captions = start(2);
    const auto isAfter = [&captions](double time) {
      return captions->playedSeconds() >= time;
    };
    QTRY_VERIFY_WITH_TIMEOUT(isAfter(seconds / 10), 3'600'000);
    const std::size_t before = heapBytes();
    QTRY_VERIFY_WITH_TIMEOUT(isAfter(seconds), 3'600'000);
    const std::size_t after = heapBytes();
    const QString lastStatus = statuses_.last();
    captions->stopPlaying();
    QElapsedTimer stopping;
    stopping.start();
    await(captions->engine.stop());
    qInfo() << "heap bytes:" << before << after
            << "longest backlog, s:" << captions->longestBacklog()
            << "stop, ms:" << stopping.elapsed() << "skips:" << statuses_.filter("Skipped").size()
            << "finals:" << finals_.size();
    QVERIFY(after < before + kMegabyte);
    QVERIFY(captions->longestBacklog() <= kMaxBacklog);
    // Shown for 20 s at the beginning, while more is skipped.
    const qsizetype advised = statuses_.filter("Choose a smaller one in Settings.").size();
    QVERIFY(advised > 0 && advised < 8);
    QVERIFY(!lastStatus.contains("Choose"));
    QVERIFY(statuses_.filter("Skipped").size() > static_cast<int>(seconds / 12));
    QVERIFY(finals_.size() > static_cast<int>(seconds / 20));
  }
};

QTEST_GUILESS_MAIN(ThrottledRecognizerTest)
#include "throttled_recognizer_test.moc"
