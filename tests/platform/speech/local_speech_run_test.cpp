// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/local_speech_run.h"

#include "platform/speech/audio_backlog.h"
#include "support/await.h"
#include "support/installed_recognizer.h"
#include "support/manual_clock.h"
#include "support/scripted_recognizer_backend.h"
#include "support/settle.h"
#include "support/suite.h"

using namespace velun;
using namespace std::chrono_literals;

namespace {

/// A run of a scripted recognizer, with a list of its signals.
struct Fixture {
  void start() {
    run = std::make_unique<LocalSpeechRun>(
        std::vector<SpeechRecognizer>{
            {"only", "Only", test::installedRecognizer(provider, "en_US")}},
        input, clock);
    QObject::connect(run.get(), &SpeechRun::resultReady, [this](const TranscriptionResult& result) {
      emitted << result.text;
      if (result.isFinal) lastFinal = result;
    });
    QObject::connect(run.get(), &SpeechRun::ended, [this](const std::optional<QString>& error) {
      emitted << "end " + error.value_or("-");
    });
    QObject::connect(run.get(), &SpeechRun::lagChanged,
                     [this](bool isBehind) { emitted << (isBehind ? "behind" : "caught up"); });
    QObject::connect(run.get(), &SpeechRun::skipped,
                     [this](double seconds) { emitted << QString("skipped %1").arg(seconds); });
    QObject::connect(run.get(), &SpeechRun::tooSlow,
                     [this](const QString& advice) { emitted << "too slow " + advice; });
    QObject::connect(run.get(), &SpeechRun::noticed,
                     [this](const QString& notice) { emitted << "notice " + notice; });
  }
  void yield(double seconds = 0.1) {
    input->yield({std::vector<float>(static_cast<std::size_t>(seconds * kSpeechSampleRate))});
  }
  /// A recognizer that fails is started again, until it has failed too often.
  void yieldUntilTheEnd() {
    VERIFY_SOON((yield(), !emitted.isEmpty() && emitted.last().startsWith("end")));
  }

  test::ManualClock clock;
  QStringList emitted;
  std::optional<TranscriptionResult> lastFinal;
  test::ScriptedRecognizerProvider provider{{"en_US"}, {"en_US"}};
  test::BackendScript& script = *provider.script;
  std::shared_ptr<SpeechInput> input = std::make_shared<SpeechInput>();
  std::unique_ptr<LocalSpeechRun> run;
};

}  // namespace

class LocalSpeechRunTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void resultsArriveInOrder() {
    Fixture f;
    f.start();
    for (int i = 0; i < 50; ++i) f.yield(0.01);
    test::await(f.run->finish());
    QStringList expected;
    for (int i = 1; i <= 50; ++i) expected << QString("draft %1").arg(i);
    expected << "final 50"
             << "end -";
    QCOMPARE(f.emitted, expected);
    QVERIFY(!f.script.wasOnMainThread);
    QCOMPARE(f.script.alive.load(), 0);
  }

  void audioFromBeforeTheStartIsDecoded() {
    Fixture f;
    f.yield();
    f.start();
    test::await(f.run->settle());
    QCOMPARE(f.emitted, QStringList({"draft 1", "final 1"}));
  }

  void changedNoticeIsToldOnce() {
    Fixture f;
    f.script.laterNotice = "No punctuation any more";
    f.start();
    f.yield();
    f.yield();
    test::await(f.run->finish());
    QCOMPARE(f.emitted, QStringList({"draft 1", "notice No punctuation any more", "draft 2",
                                     "final 2", "end -"}));
  }

  void noticeComesBeforeTheResults() {
    Fixture f;
    f.script.notice = "No punctuation";
    f.start();
    f.yield();
    test::await(f.run->finish());
    QCOMPARE(f.emitted, QStringList({"notice No punctuation", "draft 1", "final 1", "end -"}));
  }

  void settleDeliversItsResultsAndTheRunGoesOn() {
    Fixture f;
    f.start();
    f.yield();
    f.yield();
    test::await(f.run->settle());
    QCOMPARE(f.emitted.last(), QString("final 2"));
    f.yield();
    test::await(f.run->finish());
    QCOMPARE(f.emitted.mid(3), QStringList({"draft 1", "final 1", "end -"}));
  }

  void settleWithoutAudioCompletes() {
    Fixture f;
    f.start();
    test::await(f.run->settle());
    QVERIFY(f.emitted.isEmpty());
  }

  void operationsAfterTheEndComplete() {
    Fixture f;
    f.start();
    test::await(f.run->finish());
    test::await(f.run->settle());
    test::await(f.run->finish());
    test::await(f.run->cancel());
    QCOMPARE(f.emitted, QStringList{"end -"});
  }

  void cancelDiscardsUndeliveredResults() {
    Fixture f;
    f.start();
    f.yield();
    QTRY_COMPARE(f.script.samplesTaken.load(), 1600);
    f.emitted.clear();
    f.yield();
    test::await(f.run->cancel());
    QVERIFY(!f.emitted.join('|').contains("final"));
    QCOMPARE(f.emitted.last(), QString("end -"));
    QCOMPARE(f.script.finalizeCount.load(), 0);
  }

  void failureToLoadEndsTheRun() {
    Fixture f;
    f.script.failsToLoad = true;
    f.start();
    QTRY_COMPARE(f.emitted, QStringList{"end Cannot load"});
    test::await(f.run->settle());
    test::await(f.run->finish());
  }

  void failureEndsTheRunAfterEarlierResults() {
    Fixture f;
    f.start();
    f.yield();
    test::await(f.run->settle());
    f.script.failsToDecode = true;
    f.yieldUntilTheEnd();
    QCOMPARE(f.emitted, QStringList({"draft 1", "final 1", "end Cannot decode"}));
    QCOMPARE(f.script.alive.load(), 0);
  }

  void draftOfARecognizerThatFailsBecomesFinalWithItsTimes() {
    Fixture f;
    f.start();
    f.yield(1);
    VERIFY_SOON(f.emitted.contains("draft 1"));
    f.script.failsToDecode = true;
    f.yieldUntilTheEnd();
    QVERIFY(f.lastFinal && f.lastFinal->text == "draft 1");
    QVERIFY(f.lastFinal->spoken);
    QVERIFY(f.lastFinal->spoken->start < f.lastFinal->spoken->end);
  }

  void gapInAPhraseIsDecodedAsSilence() {
    Fixture f;
    constexpr int kWord = 1600;
    constexpr int kPause = 9600;
    f.script.phraseLength = kWord + kPause;
    f.start();
    f.yield();
    QTRY_COMPARE(f.script.samplesTaken.load(), kWord);
    f.clock.advance(700ms);
    QTRY_COMPARE(f.emitted.last(), QString("final 2"));
    QCOMPARE(f.script.finalizeCount.load(), 0);
  }

  void longGapIsDecodedAsOneSecond() {
    Fixture f;
    constexpr int kWord = 1600;
    constexpr int kMaxSilence = 16000;
    f.script.phraseLength = kWord + kMaxSilence;
    f.start();
    f.yield();
    QTRY_COMPARE(f.script.samplesTaken.load(), kWord);
    f.clock.advance(1h);
    QTRY_COMPARE(f.emitted.last(), QString("final 2"));
    QCOMPARE(f.script.samplesTaken.load(), kWord + kMaxSilence);
  }

  void gapBetweenPhrasesIsNotDecoded() {
    Fixture f;
    f.start();
    f.clock.advance(1h);
    test::await(f.run->settle());
    QCOMPARE(f.script.samplesTaken.load(), 0);
  }

  void shortLagIsReportedAndNothingIsDropped() {
    Fixture f;
    f.script.isSlow = true;
    f.start();
    f.yield();
    VERIFY_SOON(f.script.isWaiting);
    for (int i = 0; i < 41; ++i) f.yield();
    f.script.mayTake.release(2);
    VERIFY_SOON(f.emitted.contains("behind"));
    QVERIFY(!f.emitted.contains("caught up"));
    f.script.isSlow = false;
    f.script.mayTake.release(1);
    VERIFY_SOON(f.emitted.contains("caught up"));
    test::await(f.run->finish());
    QVERIFY(f.emitted.contains("final 42"));
    QCOMPARE(f.emitted.count("behind"), 1);
  }

  void longLagIsSkipped() {
    Fixture f;
    f.script.isSlow = true;
    f.start();
    f.yield();
    VERIFY_SOON(f.script.isWaiting);
    for (int skip = 0; skip < 2; ++skip) {
      for (int i = 0; i < 60; ++i) f.yield();
      f.script.mayTake.release(1);
      VERIFY_SOON(f.emitted.filter("skipped").size() == skip + 1);
    }
    QCOMPARE(f.emitted.last(),
             QString("too slow This computer is too busy for captions. Close other programs."));
    f.script.isSlow = false;
    f.script.mayTake.release(1);
    test::await(f.run->finish());
    // The phrase before a skipped part is not continued after it.
    QVERIFY(f.script.finalizeCount > 1);
    QVERIFY(f.script.samplesTaken < 60 * 1600);
  }

  void audioFromWhileItLoadedIsNotALag() {
    Fixture f;
    f.script.isSlowToLoad = true;
    f.start();
    VERIFY_SOON(f.script.isWaiting);
    for (int i = 0; i < 90; ++i) f.yield();
    f.script.mayTake.release(1);
    test::await(f.run->settle());
    QCOMPARE(f.emitted.last(), QString("final 90"));
    QVERIFY(!f.emitted.contains("behind"));
  }

  void audioIsKeptBackWhileTheRecognizerIsBusy() {
    Fixture f;
    f.script.undecodedSeconds = AudioBacklog::kMaxUndecodedSeconds + 0.1;
    f.start();
    f.yield();
    VERIFY_SOON(f.script.awaitedDecoding > 2);
    QCOMPARE(f.script.samplesTaken.load(), 0);
    f.script.undecodedSeconds = 0;
    test::await(f.run->finish());
    QCOMPARE(f.script.samplesTaken.load(), 1600);
  }

  void lagHasHysteresis() {
    LagWatch lag;
    QVERIFY(!lag.update(LagWatch::kMaxPendingSeconds));
    QCOMPARE(lag.update(LagWatch::kMaxPendingSeconds + 0.1), std::optional(true));
    QVERIFY(!lag.update(LagWatch::kMaxPendingSeconds - 1));
    QVERIFY(!lag.update(LagWatch::kMaxPendingSeconds + 1));
    QCOMPARE(lag.update(LagWatch::kCaughtUpSeconds), std::optional(false));
    QVERIFY(!lag.update(0));
  }

  void destroyingTheRunEndsItsThread() {
    Fixture f;
    f.start();
    for (int i = 0; i < 10; ++i) f.yield();
    VERIFY_SOON(f.script.samplesTaken > 0);
    f.run.reset();
    QCOMPARE(f.script.alive.load(), 0);
    f.emitted.clear();
    test::settle();
    QVERIFY(f.emitted.isEmpty());
  }

  void cancelInterruptsDecoding() {
    Fixture f;
    f.script.isSlow = true;
    f.start();
    f.yield();
    VERIFY_SOON(f.script.isWaiting);
    test::await(f.run->cancel());
    QCOMPARE(f.emitted, QStringList{"end -"});
  }

  void cancelCompletesAFinishThatWaits_data() {
    QTest::addColumn<bool>("isLoading");
    QTest::newRow("while loading") << true;
    QTest::newRow("while decoding") << false;
  }
  void cancelCompletesAFinishThatWaits() {
    QFETCH(bool, isLoading);
    Fixture f;
    f.script.isSlowToLoad = isLoading;
    f.script.isSlow = !isLoading;
    f.start();
    f.yield();
    VERIFY_SOON(f.script.isWaiting);
    QCoro::Task<> finishing = f.run->finish();
    test::await(f.run->cancel());
    test::await(std::move(finishing));
    test::await(f.run->finish());
    QCOMPARE(f.emitted, QStringList{"end -"});
  }

  void cancelInterruptsLoading() {
    Fixture f;
    f.script.isSlowToLoad = true;
    f.start();
    VERIFY_SOON(f.script.isWaiting);
    test::await(f.run->cancel());
    QCOMPARE(f.emitted, QStringList{"end -"});
    QCOMPARE(f.script.alive.load(), 0);
  }

  void destroyingTheRunInterruptsLoading() {
    Fixture f;
    f.script.isSlowToLoad = true;
    f.start();
    VERIFY_SOON(f.script.isWaiting);
    f.run.reset();
    QCOMPARE(f.script.alive.load(), 0);
  }

  void resultsBeforeAFailureAreDelivered() {
    Fixture f;
    f.script.failsAfterDecoding = true;
    f.yield();
    f.start();
    f.yieldUntilTheEnd();
    QCOMPARE(f.emitted.first(), QString("draft 1"));
    QCOMPARE(f.emitted.last(), QString("end Cannot decode"));
  }

  void destroyingTheRunCompletesPendingOperations() {
    Fixture f;
    f.script.isSlow = true;
    f.start();
    f.yield();
    VERIFY_SOON(f.script.isWaiting);
    QCoro::Task<> finishing = f.run->finish();
    QCoro::Task<> settling = f.run->settle();
    f.run.reset();
    QCOMPARE(f.script.alive.load(), 0);
    test::await(std::move(finishing));
    test::await(std::move(settling));
    QVERIFY(f.emitted.isEmpty());
  }

  void startsAndStopsRepeatedly() {
    for (int i = 0; i < 50; ++i) {
      Fixture f;
      f.start();
      f.yield();
      if (i % 3 == 0) test::await(f.run->finish());
      if (i % 3 == 1) test::await(f.run->cancel());
    }
  }
};

QTEST_GUILESS_MAIN(LocalSpeechRunTest)
#include "local_speech_run_test.moc"
