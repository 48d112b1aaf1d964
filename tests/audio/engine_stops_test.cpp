// SPDX-License-Identifier: GPL-3.0-or-later
#include "audio/engine_fixture.h"
#include "language/localization.h"
#include "platform/speech/local_speech_platform.h"
#include "support/scripted_recognizer_backend.h"
#include "support/settle.h"
#include "support/suite.h"

using namespace velun;
using namespace std::chrono_literals;

namespace {

/// An engine with audio whose recognizer makes no progress.
struct Fixture : test::EngineFixture {
  Fixture() {
    startWithAudio();
    speech.script->hangs = true;
  }

  void beginStop() {
    stopping.emplace(engine->stop());
    test::settle();
  }
  void advance(std::chrono::milliseconds time) {
    clock.advance(time);
    test::settle();
  }
  bool hasStopped() const { return stopping->isReady(); }

  std::optional<QCoro::Task<>> stopping;
};

const QString kMessage = "failure Captions stopped before the last words were recognized.";

}  // namespace

class EngineStopsTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void stopDoesNotWaitForARecognizerThatHangs() {
    Fixture f;
    f.beginStop();
    f.advance(1700ms);
    QVERIFY(!f.hasStopped());
    f.advance(100ms);
    QVERIFY(f.hasStopped());
    QCOMPARE(f.speech.script->calls.last(), QString("cancel"));
    QCOMPARE(f.events, QStringList{kMessage});
    QCOMPARE(f.clock.scheduledCount(), std::size_t(0));
    f.speech.script->hangs = false;
    QCOMPARE(f.start(), QString());
    f.stop();
  }

  void stopWaitsAsLongAsItIsTold() {
    Fixture f;
    f.beginStop();
    f.advance(2s);
    f.engine = std::make_unique<SpeechRecognitionEngine>(f.speech, f.audio, f.clock, nullptr, 20s);
    QObject::connect(
        f.engine.get(), &SpeechRecognizing::eventOccurred,
        [&f](const SpeechRecognitionEvent& event) { f.events << test::described(event); });
    f.speech.script->hangs = false;
    f.speech.script->cancelled = {};
    f.startWithAudio();
    f.speech.script->hangs = true;
    f.beginStop();
    f.advance(19s);
    QVERIFY(!f.hasStopped());
    f.speech.script->result("in time", true);
    f.advance(1s);
    QVERIFY(f.hasStopped());
    QCOMPARE(f.events, QStringList({"final in time (en_US, computer)", kMessage}));
  }

  void saysInKoreanThatTheRecognizerHangs() {
    Localization::shared().setLanguage(AppLanguage::korean);
    Fixture f;
    f.beginStop();
    f.advance(2s);
    QCOMPARE(f.events, QStringList{"failure 마지막 말이 인식되기 전에 자막이 중지되었습니다."});
  }

  void draftOfARecognizerThatHangsBecomesFinal() {
    Fixture f;
    std::optional<FinalEvent> said;
    QObject::connect(f.engine.get(), &SpeechRecognizing::eventOccurred,
                     [&said](const SpeechRecognitionEvent& event) {
                       if (const auto* final = std::get_if<FinalEvent>(&event)) said = *final;
                     });
    f.speech.script->result("so far", false);
    f.beginStop();
    f.advance(2s);
    QVERIFY(f.hasStopped());
    QCOMPARE(f.events, QStringList({"draft so far", "final so far (en_US, computer)", kMessage}));
    // Every line has its times, so that the session can become subtitles.
    QVERIFY(said && said->spoken && said->spoken->start < said->spoken->end);
  }

  void stopKeepsWhatIsRecognizedInTime() {
    Fixture f;
    f.beginStop();
    f.advance(1s);
    f.speech.script->result("in time", true);
    f.speech.script->result("half", false);
    f.advance(1s);
    QVERIFY(f.hasStopped());
    QCOMPARE(f.events, QStringList({"final in time (en_US, computer)", "draft half",
                                    "final half (en_US, computer)", kMessage}));
  }

  void recognitionThatEndsDuringTheStopCompletesIt() {
    Fixture f;
    f.beginStop();
    f.speech.script->end(QString("The helper ended."));
    f.speech.script->cancelled.complete(true);
    test::settle();
    QVERIFY(f.hasStopped());
    QCOMPARE(f.events, QStringList{"failure Recognition error: The helper ended."});
    QCOMPARE(f.clock.scheduledCount(), std::size_t(0));
  }

  void noticeDuringTheStopIsNotShown() {
    Fixture f;
    f.beginStop();
    Q_EMIT f.speech.script->run->noticed("No punctuation");
    QCOMPARE(f.events, QStringList());
    f.advance(2s);
    QCOMPARE(f.events, QStringList{kMessage});
  }

  void stopEndsTheThreadOfARecognizerThatHangs_data() {
    QTest::addColumn<bool>("isLoading");
    QTest::newRow("while loading") << true;
    QTest::newRow("while decoding") << false;
  }
  void stopEndsTheThreadOfARecognizerThatHangs() {
    QFETCH(bool, isLoading);
    test::ManualClock clock;
    test::ScriptedAudioPlatform audio;
    const auto recognizer = std::make_shared<test::ScriptedRecognizerProvider>(
        QStringList{"en_US"}, QStringList{"en_US"});
    recognizer->script->isSlowToLoad = isLoading;
    recognizer->script->isSlow = !isLoading;
    LocalSpeechPlatform speech({recognizer}, clock);
    SpeechRecognitionEngine engine(speech, audio, clock);
    test::await(engine.start("en_US", {}));
    audio.script->handler(test::tone(440, 0.1F, 1600));
    VERIFY_SOON(recognizer->script->isWaiting);
    QCoro::Task<> stopping = engine.stop();
    clock.advance(2s);
    test::await(std::move(stopping));
    QCOMPARE(recognizer->script->alive.load(), 0);
  }

  void engineCanBeDestroyedWhileItWaits() {
    Fixture f;
    f.beginStop();
    f.engine.reset();
    QCOMPARE(f.clock.scheduledCount(), std::size_t(0));
    f.speech.script->cancelled.complete(true);
    test::settle();
    QVERIFY(f.hasStopped());
  }
};

QTEST_GUILESS_MAIN(EngineStopsTest)
#include "engine_stops_test.moc"
