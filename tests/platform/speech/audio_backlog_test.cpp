// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/audio_backlog.h"

#include "support/manual_clock.h"
#include "support/suite.h"

#include <algorithm>
#include <cmath>

using namespace velun;
using namespace std::chrono_literals;

namespace {

constexpr double kBuffer = 0.02;

/// Speech: words of 0.3 s, each followed by a gap of 0.1 s. The value of a sample says in which
/// second it was said; it is 0 in a gap.
SpeechSamples speech(double begin, double seconds) {
  SpeechSamples result;
  const auto first = std::lround(begin * kSpeechSampleRate);
  const auto count = std::lround(seconds * kSpeechSampleRate);
  for (long i = first; i < first + count; ++i) {
    const bool isGap = i % 6400 >= 4800;
    const double second = static_cast<double>(i) / kSpeechSampleRate;
    result.samples.push_back(isGap ? 0.0F : static_cast<float>(0.2 + second / 1e4));
  }
  return result;
}

/// Live audio and a recognizer that decodes `speed` seconds of it in a second, in virtual time.
struct Machine {
  explicit Machine(double itsSpeed) : speed(itsSpeed) {}

  void step() {
    input.yield(speech(said, kBuffer));
    said += kBuffer;
    clock.advance(20ms);
    if (isLoading) return;
    undecoded = std::max(0.0, undecoded - speed * kBuffer);
    while (undecoded <= AudioBacklog::kMaxUndecodedSeconds) {
      const std::optional<SpeechSamples> taken = input.tryNext();
      if (!taken) break;
      if (taken->followsGap) {
        ++gaps;
        isCutInWord = isCutInWord || lastSample != 0 || taken->samples.front() != 0;
      }
      lastSample = taken->samples.back();
      undecoded += taken->seconds();
    }
    take(backlog.update(undecoded));
  }
  void take(const AudioBacklog::Update& update) {
    if (update.isBehind) (*update.isBehind ? behindCount : caughtUpCount)++;
    if (update.skippedSeconds > 0) ++skipCount;
    skipped += update.skippedSeconds;
    if (update.isTooSlow) ++tooSlowCount;
    longest = std::max(longest, input.pendingSeconds() + undecoded);
  }
  void run(double seconds) {
    for (const double end = said + seconds; said < end;) step();
  }
  void load(double seconds) {
    isLoading = true;
    run(seconds);
    isLoading = false;
    backlog.recognizerLoaded();
    longest = 0;
  }

  double speed;
  test::ManualClock clock;
  SpeechInput input;
  AudioBacklog backlog{input, clock};
  bool isLoading = false;
  double said = 0;
  double undecoded = 0;
  double skipped = 0;
  double longest = 0;
  float lastSample = 0;
  bool isCutInWord = false;
  int gaps = 0;
  int behindCount = 0;
  int caughtUpCount = 0;
  int skipCount = 0;
  int tooSlowCount = 0;
};

}  // namespace

class AudioBacklogTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void halfOfRealTimeStaysBoundedForTenMinutes() {
    Machine machine(0.5);
    machine.load(1);
    machine.run(600);
    QVERIFY2(machine.longest <= AudioBacklog::kMaxSeconds,
             qPrintable(QString::number(machine.longest)));
    QVERIFY2(std::abs(machine.skipped - 300) < 6, qPrintable(QString::number(machine.skipped)));
    QCOMPARE(machine.behindCount, 1);
    QCOMPARE(machine.caughtUpCount, 0);
    QCOMPARE(machine.tooSlowCount, 1);
    QVERIFY(!machine.isCutInWord);
    QVERIFY(std::abs(machine.gaps - machine.skipCount) <= 1);
    QVERIFY2(machine.skipped / machine.skipCount > 2.5,
             qPrintable(QString::number(machine.skipCount)));
  }

  void fastMachineIsNeverBehind_data() {
    QTest::addColumn<double>("loading");
    QTest::addColumn<double>("speed");
    QTest::newRow("without loading") << 0.0 << 1.0;
    QTest::newRow("after 10 s of loading") << 10.0 << 1.6;
    QTest::newRow("after 25 s of loading") << 25.0 << 1.6;
  }
  void fastMachineIsNeverBehind() {
    QFETCH(double, loading);
    QFETCH(double, speed);
    Machine machine(speed);
    machine.load(loading);
    machine.run(120);
    QCOMPARE(machine.skipped, 0.0);
    QCOMPARE(machine.behindCount, 0);
  }

  void slowMachineIsBehindAfterLoading() {
    Machine machine(0.8);
    machine.load(10);
    machine.run(60);
    QVERIFY(machine.behindCount > 0);
    QVERIFY(machine.skipCount > 1);
    QVERIFY(machine.input.pendingSeconds() < AudioBacklog::kMaxSeconds);
  }

  void shortDelayIsCaughtUp() {
    Machine machine(0.1);
    machine.run(7);
    QCOMPARE(machine.behindCount, 1);
    QCOMPARE(machine.skipCount, 1);
    machine.speed = 3;
    machine.run(10);
    QCOMPARE(machine.caughtUpCount, 1);
    QCOMPARE(machine.skipCount, 1);
    QCOMPARE(machine.tooSlowCount, 0);
  }

  void audioWithoutASilenceIsSkippedAtTheBound() {
    test::ManualClock clock;
    SpeechInput input;
    AudioBacklog backlog(input, clock);
    for (int i = 0; i < 47; ++i) input.yield({std::vector<float>(1600, 0.5F)});
    const AudioBacklog::Update update = backlog.update(0.4);
    QVERIFY(update.skippedSeconds > 2.5);
    QVERIFY(input.pendingSeconds() + update.skippedSeconds > 4.69);
    QVERIFY(input.pendingSeconds() + update.skippedSeconds < 4.71);
  }

  void endedStreamIsDecodedToItsEnd() {
    test::ManualClock clock;
    SpeechInput input;
    AudioBacklog backlog(input, clock);
    input.yield(speech(0, 8));
    input.finish();
    QCOMPARE(backlog.update(0).skippedSeconds, 0.0);
    QCOMPARE(input.pendingSeconds(), 8.0);
  }

  void audioForARecognizerThatTakesNothingIsBounded() {
    SpeechInput input;
    for (int i = 0; i < 1300; ++i) input.yield({std::vector<float>(1600)});
    QVERIFY(input.pendingSeconds() <= SpeechInput::kMaxPendingSeconds);
    QVERIFY(input.tryNext()->followsGap);
  }
};

QTEST_GUILESS_MAIN(AudioBacklogTest)
#include "audio_backlog_test.moc"
