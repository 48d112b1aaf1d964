// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/local_speech_analyzer.h"

#include "platform/speech/lag_watch.h"
#include "platform/speech/local_transcriber.h"
#include "support/await.h"
#include "support/manual_clock.h"
#include "support/scripted_recognizer_backend.h"
#include "support/settle.h"
#include "support/suite.h"

using namespace velun;

namespace {

constexpr AudioFormat kFormat = {AudioFormat::Sample::float32, 16000, 1, true};

/// An analyzer over a scripted backend, with what the transcriber heard.
struct Fixture {
  Fixture() {
    transcriber->onResult = [this](const TranscriptionResult& result) {
      heard << result.text;
    };
    transcriber->onEnd = [this](const std::optional<QString>& error) {
      heard << "end " + error.value_or("-");
    };
    transcriber->onFallingBehind = [this](bool isBehind) {
      heard << (isBehind ? "behind" : "caught up");
    };
  }
  void start() { test::await(analyzer->start(input)); }
  void yield(double seconds = 0.1) {
    PcmBuffer buffer(kFormat, static_cast<std::size_t>(seconds * kFormat.sampleRate));
    buffer.setFrameLength(buffer.frameCapacity());
    input->yield({std::move(buffer)});
  }

  test::ManualClock clock;
  QStringList heard;
  test::ScriptedRecognizerProvider provider{{"en_US"}, {"en_US"}};
  test::BackendScript& script = *provider.script;
  std::shared_ptr<LocalTranscriber> transcriber = std::make_shared<LocalTranscriber>("en_US");
  std::shared_ptr<AnalyzerInputStream> input = std::make_shared<AnalyzerInputStream>();
  std::unique_ptr<LocalSpeechAnalyzer> analyzer = std::make_unique<LocalSpeechAnalyzer>(
      transcriber, provider.factory("en_US"), std::function<void()>(), clock);
};

}  // namespace

class LocalSpeechAnalyzerTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void resultsArriveInOrder() {
    Fixture f;
    f.start();
    for (int i = 0; i < 50; ++i) f.yield(0.01);
    test::await(f.analyzer->finalizeAndFinishThroughEndOfInput());
    QStringList expected;
    for (int i = 1; i <= 50; ++i) expected << QString("draft %1").arg(i);
    expected << "final 50"
             << "end -";
    QCOMPARE(f.heard, expected);
    QVERIFY(!f.script.wasOnMainThread);
    QCOMPARE(f.script.alive.load(), 0);
  }

  void audioFromBeforeTheStartIsNotLost() {
    Fixture f;
    f.yield();
    f.start();
    test::await(f.analyzer->finalizeThroughEndOfInputSoFar());
    QCOMPARE(f.heard, QStringList({"draft 1", "final 1"}));
  }

  void settlingDeliversItsResultBeforeItReturnsAndGoesOn() {
    Fixture f;
    f.start();
    f.yield();
    f.yield();
    test::await(f.analyzer->finalizeThroughEndOfInputSoFar());
    QCOMPARE(f.heard.last(), QString("final 2"));
    f.yield();
    test::await(f.analyzer->finalizeAndFinishThroughEndOfInput());
    QCOMPARE(f.heard.mid(3), QStringList({"draft 1", "final 1", "end -"}));
  }

  void settlingWithoutAudioReturns() {
    Fixture f;
    f.start();
    test::await(f.analyzer->finalizeThroughEndOfInputSoFar());
    QVERIFY(f.heard.isEmpty());
  }

  void settlingAfterTheEndReturns() {
    Fixture f;
    f.start();
    test::await(f.analyzer->finalizeAndFinishThroughEndOfInput());
    test::await(f.analyzer->finalizeThroughEndOfInputSoFar());
    test::await(f.analyzer->finalizeAndFinishThroughEndOfInput());
    test::await(f.analyzer->cancelAndFinishNow());
    QCOMPARE(f.heard, QStringList{"end -"});
  }

  void everythingBeforeAStartIsHarmless() {
    Fixture f;
    test::await(f.analyzer->finalizeThroughEndOfInputSoFar());
    test::await(f.analyzer->finalizeAndFinishThroughEndOfInput());
    test::await(f.analyzer->cancelAndFinishNow());
    QVERIFY(f.heard.isEmpty());
  }

  void cancellingDropsWhatWasNotDelivered() {
    Fixture f;
    f.start();
    f.yield();
    QTRY_COMPARE(f.script.samplesTaken.load(), 1600);
    f.heard.clear();
    f.yield();
    test::await(f.analyzer->cancelAndFinishNow());
    QVERIFY(!f.heard.join('|').contains("final"));
    QCOMPARE(f.heard.last(), QString("end -"));
    QCOMPARE(f.script.finalizeCount.load(), 0);
  }

  void aRecognizerThatCannotBeLoadedEndsTheResults() {
    Fixture f;
    f.script.failsToLoad = true;
    f.start();
    QTRY_COMPARE(f.heard, QStringList{"end Cannot load"});
    test::await(f.analyzer->finalizeThroughEndOfInputSoFar());
    test::await(f.analyzer->finalizeAndFinishThroughEndOfInput());
  }

  void aRecognizerThatFailsEndsTheResultsAfterThoseBefore() {
    Fixture f;
    f.start();
    f.yield();
    test::await(f.analyzer->finalizeThroughEndOfInputSoFar());
    f.script.failsToDecode = true;
    f.yield();
    QTRY_COMPARE(f.heard, QStringList({"draft 1", "final 1", "end Cannot decode"}));
    QCOMPARE(f.script.alive.load(), 0);
  }

  void aGapInTheAudioIsHeardAsSilenceThatEndsThePhrase() {
    Fixture f;
    constexpr int kWord = 1600;
    constexpr int kPause = 9600;
    f.script.phraseLength = kWord + kPause;
    f.start();
    f.yield();
    VERIFY_SOON(!f.heard.isEmpty() && f.heard.last().startsWith("final"));
    QCOMPARE(f.script.finalizeCount.load(), 0);
    // Between phrases there is nothing that silence could end.
    const int taken = f.script.samplesTaken;
    QTest::qWait(400);
    QCOMPARE(f.script.samplesTaken.load(), taken);
  }

  void aLongHaltIsNotHeardAsAnHourOfSilence() {
    Fixture f;
    constexpr int kWord = 1600;
    constexpr int kLongestGap = 16000;
    f.script.phraseLength = kWord + kLongestGap;
    f.script.isSlow = true;
    f.start();
    f.yield();
    VERIFY_SOON(f.script.isWaiting);
    f.script.isSlow = false;
    QTest::qWait(1500);
    f.script.mayTake.release();
    VERIFY_SOON(!f.heard.isEmpty() && f.heard.last().startsWith("final"));
    QCOMPARE(f.script.samplesTaken.load(), kWord + kLongestGap);
  }

  void fallingBehindIsToldAndNothingIsDropped() {
    Fixture f;
    f.script.isSlow = true;
    f.start();
    for (int i = 0; i < 60; ++i) f.yield();
    f.script.mayTake.release(2);
    VERIFY_SOON(f.heard.contains("behind"));
    QVERIFY(!f.heard.contains("caught up"));
    f.script.isSlow = false;
    f.script.mayTake.release(1);
    VERIFY_SOON(f.heard.contains("caught up"));
    test::await(f.analyzer->finalizeAndFinishThroughEndOfInput());
    QVERIFY(f.heard.contains("final 60"));
    QCOMPARE(f.heard.count("behind"), 1);
  }

  void theAnswerAboutLagDoesNotFlicker() {
    LagWatch lag;
    QVERIFY(!lag.update(LagWatch::kBehindSeconds));
    QCOMPARE(lag.update(LagWatch::kBehindSeconds + 0.1), std::optional(true));
    QVERIFY(!lag.update(LagWatch::kBehindSeconds - 1));
    QVERIFY(!lag.update(LagWatch::kBehindSeconds + 1));
    QCOMPARE(lag.update(LagWatch::kCaughtUpSeconds), std::optional(false));
    QVERIFY(!lag.update(0));
  }

  void destroyingARunningAnalyzerEndsItsThread() {
    Fixture f;
    f.start();
    for (int i = 0; i < 10; ++i) f.yield();
    VERIFY_SOON(f.script.samplesTaken > 0);
    f.analyzer.reset();
    QCOMPARE(f.script.alive.load(), 0);
    f.heard.clear();
    test::settle();
    QVERIFY(f.heard.isEmpty());
  }

  void cancellingReachesARecognizerAtWork() {
    Fixture f;
    f.script.isSlow = true;
    f.start();
    f.yield();
    VERIFY_SOON(f.script.isWaiting);
    test::await(f.analyzer->cancelAndFinishNow());
    QCOMPARE(f.heard, QStringList{"end -"});
  }

  void cancellingReachesARecognizerThatLoads() {
    Fixture f;
    f.script.isSlowToLoad = true;
    f.start();
    VERIFY_SOON(f.script.isWaiting);
    test::await(f.analyzer->cancelAndFinishNow());
    QCOMPARE(f.heard, QStringList{"end -"});
    QCOMPARE(f.script.alive.load(), 0);
  }

  void destroyingAnAnalyzerThatLoadsEndsItsThread() {
    Fixture f;
    f.script.isSlowToLoad = true;
    f.start();
    VERIFY_SOON(f.script.isWaiting);
    f.analyzer.reset();
    QCOMPARE(f.script.alive.load(), 0);
  }

  void whatWasFoundBeforeAFailureIsDelivered() {
    Fixture f;
    f.script.failsAfterDecoding = true;
    f.yield();
    f.start();
    QTRY_COMPARE(f.heard, QStringList({"draft 1", "end Cannot decode"}));
  }

  void aResultMayTakeItsListenerAway() {
    Fixture f;
    f.transcriber->onResult = [&f, heard = QString("heard ")](const TranscriptionResult& result) {
      f.transcriber->onResult = nullptr;
      f.heard << heard + result.text;
    };
    f.yield();
    f.start();
    test::await(f.analyzer->finalizeAndFinishThroughEndOfInput());
    QCOMPARE(f.heard, QStringList({"heard draft 1", "end -"}));
  }

  void destroyingAnalyzerThatFinishesEndsItsThreadAndTheWait() {
    Fixture f;
    f.script.isSlow = true;
    f.start();
    f.yield();
    VERIFY_SOON(f.script.isWaiting);
    QCoro::Task<> finishing = f.analyzer->finalizeAndFinishThroughEndOfInput();
    QCoro::Task<> settling = f.analyzer->finalizeThroughEndOfInputSoFar();
    f.analyzer.reset();
    QCOMPARE(f.script.alive.load(), 0);
    test::await(std::move(finishing));
    test::await(std::move(settling));
    QVERIFY(f.heard.isEmpty());
  }

  void startAndStopOverAndOver() {
    for (int i = 0; i < 50; ++i) {
      Fixture f;
      f.start();
      f.yield();
      if (i % 3 == 0) test::await(f.analyzer->finalizeAndFinishThroughEndOfInput());
      if (i % 3 == 1) test::await(f.analyzer->cancelAndFinishNow());
    }
  }
};

QTEST_GUILESS_MAIN(LocalSpeechAnalyzerTest)
#include "local_speech_analyzer_test.moc"
