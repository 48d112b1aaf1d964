// SPDX-License-Identifier: GPL-3.0-or-later
#include "audio/engine_fixture.h"
#include "language/localization.h"
#include "platform/speech/local_speech_platform.h"
#include "support/failure_of.h"
#include "support/scripted_recognizer_backend.h"
#include "support/settle.h"
#include "support/suite.h"

using namespace velun;
using namespace std::chrono_literals;

using Fixture = test::EngineFixture;

class SpeechRecognitionEngineTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void startsRecognitionThenAudio() {
    Fixture f;
    QCOMPARE(f.start(), QString());
    QCOMPARE(f.speech.script->calls, QStringList({"support en_US", "start en_US"}));
    QCOMPARE(f.events, QStringList{"status -"});
    QCOMPARE(f.audio.script->calls, QStringList{"start output"});
    f.stop();
  }

  void useMicChoosesTheMicrophone() {
    Fixture f;
    QCOMPARE(f.start("en_US", {AudioTarget::Kind::input, {}, {}}), QString());
    QCOMPARE(f.audio.script->calls, QStringList{"start input"});
    f.events.clear();
    f.speech.script->result("hello", true);
    QCOMPARE(f.events, QStringList{"final hello (en_US, microphone)"});
    f.stop();
  }

  void unsupportedLanguageFailsBeforeAnyAudio() {
    Fixture f;
    QCOMPARE(f.start("fr_FR"), QString("French (France) isn’t a supported language"));
    QVERIFY(f.audio.script->calls.isEmpty());
    QCOMPARE(f.speech.script->calls, QStringList{"support fr_FR"});
    f.stop();
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(f.start("fr_FR"), QString("프랑스어(프랑스)는 지원하지 않는 언어입니다"));
  }

  void eventsKeepTheRequestedIdentifier() {
    Fixture f;
    QCOMPARE(f.start("en-GB"), QString());
    QVERIFY(f.speech.script->calls.contains("start en_US"));
    f.events.clear();
    f.speech.script->result(" Good morning \n", true);
    QCOMPARE(f.events, QStringList{"final Good morning (en-GB, computer)"});
    f.stop();
  }

  void cancelledStartThrowsCancelled() {
    Fixture f;
    f.stopSource.request_stop();
    QCOMPARE(f.start(), QString("cancelled"));
    QCOMPARE(f.speech.script->calls, QStringList{"support en_US"});
  }

  void failureToStartRecognitionIsCleanedUp() {
    Fixture f;
    f.speech.script->startFailure = "No model";
    QCOMPARE(f.start(), QString("No model"));
    QCOMPARE(f.failedStage, std::optional(FailureStage::recognition));
    QVERIFY(f.audio.script->calls.isEmpty());
    f.speech.script->startFailure.reset();
    QCOMPARE(f.start(), QString());
    f.stop();
  }

  void failureToStartAudioIsCleanedUp() {
    Fixture f;
    f.audio.script->startFailure = "No output device";
    QCOMPARE(f.start(), QString("No output device"));
    QCOMPARE(f.failedStage, std::optional(FailureStage::sound));
    QCOMPARE(f.audio.script->calls, QStringList({"start output", "stop"}));
    QCOMPARE(f.speech.script->calls.last(), QString("cancel"));
    QVERIFY(f.engine->meterBands().empty());
  }

  void stopEndsAStartThatWaitsForTheSoundServer() {
    Fixture f;
    f.audio.script->isSlow = true;
    QCoro::Task<> starting = f.engine->start("en_US", {});
    test::settle();
    QCOMPARE(f.audio.script->calls, QStringList{"start output"});
    f.stop();
    QVERIFY_THROWS_EXCEPTION(Cancelled, test::await(std::move(starting)));
    QCOMPARE(f.speech.script->calls.last(), QString("cancel"));
  }

  void stopRequestEndsAStartThatWaitsForTheSoundServer() {
    Fixture f;
    f.audio.script->isSlow = true;
    QCoro::Task<> starting = f.engine->start("en_US", {}, f.stopSource.get_token());
    test::settle();
    f.stopSource.request_stop();
    QVERIFY_THROWS_EXCEPTION(Cancelled, test::await(std::move(starting)));
    QVERIFY(!f.audio.source);
    QCOMPARE(f.clock.scheduledCount(), std::size_t(0));
  }

  void draftsAndFinalsAreTrimmed() {
    Fixture f;
    f.startWithAudio();
    f.speech.script->result("  one two ", false);
    f.speech.script->result("One two three.\n", true);
    QCOMPARE(f.events, QStringList({"draft one two", "final One two three. (en_US, computer)"}));
    f.stop();
  }

  void emptyFinalOnlyClearsTheDraft() {
    Fixture f;
    f.startWithAudio();
    f.speech.script->result("hm", false);
    f.speech.script->result(" \n ", true);
    QCOMPARE(f.events, QStringList({"draft hm", "draft "}));
    f.clock.advance(3s);
    QVERIFY(!f.speech.script->calls.contains("settle"));
    f.stop();
  }

  void draftIsSettledAfterOneSecondWithoutAudio() {
    Fixture f;
    f.startWithAudio();
    f.speech.script->onSettle = [&f] {
      f.speech.script->result("Left over", true);
    };
    f.speech.script->result("left over", false);
    f.clock.advance(1000ms);
    QVERIFY(!f.speech.script->calls.contains("settle"));
    f.clock.advance(500ms);
    test::settle();
    QCOMPARE(f.speech.script->calls.count("settle"), 1);
    QCOMPARE(f.events.last(), QString("final Left over (en_US, computer)"));
    f.clock.advance(5s);
    QCOMPARE(f.speech.script->calls.count("settle"), 1);
    f.stop();
  }

  void arrivingAudioKeepsADraftOpen() {
    Fixture f;
    f.startWithAudio();
    f.speech.script->result("going on", false);
    for (int i = 0; i < 20; ++i) {
      f.clock.advance(200ms);
      f.playBuffer();
    }
    QVERIFY(!f.speech.script->calls.contains("settle"));
    f.stop();
  }

  void stoppingDeliversTheLastFinalFirst() {
    Fixture f;
    f.startWithAudio();
    f.speech.script->onFinish = [&f] {
      f.speech.script->result("The end", true);
    };
    f.stop();
    QCOMPARE(f.events, QStringList{"final The end (en_US, computer)"});
    QCOMPARE(f.speech.script->calls.last(), QString("finish"));
    QCOMPARE(f.audio.script->calls.last(), QString("stop"));
    QVERIFY(f.speech.script->input->isDrained() || f.speech.script->input->tryNext());
  }

  void stoppingBeforeAnyAudioCancelsAndDeliversNothing() {
    Fixture f;
    f.start();
    f.events.clear();
    f.stop();
    QCOMPARE(f.speech.script->calls.last(), QString("cancel"));
    QVERIFY(f.events.isEmpty());
  }

  void nothingIsReportedAfterTheStop() {
    Fixture f;
    f.startWithAudio();
    f.stop();
    f.events.clear();
    QVERIFY(!f.speech.script->run);
    QVERIFY(!f.audio.source);
    QVERIFY(f.events.isEmpty());
  }

  void settlingIsRepeatedWhileTheDraftRemains() {
    Fixture f;
    f.startWithAudio();
    f.speech.script->result("left over", false);
    f.clock.advance(2600ms);
    test::settle();
    QVERIFY(f.speech.script->calls.count("settle") > 1);
    f.stop();
  }

  void stopIsIdempotent() {
    Fixture f;
    f.stop();
    f.startWithAudio();
    QCoro::Task<> first = f.engine->stop();
    QCoro::Task<> second = f.engine->stop();
    test::await(std::move(first));
    test::await(std::move(second));
    f.stop();
    QVERIFY(f.events.isEmpty());
    QCOMPARE(f.clock.scheduledCount(), std::size_t(0));
  }

  void recognitionErrorIsAFailureEvent() {
    Fixture f;
    f.startWithAudio();
    f.speech.script->end(QString("out of memory"));
    QCOMPARE(f.events, QStringList{"failure Recognition error: out of memory"});
    f.stop();
    Localization::shared().setLanguage(AppLanguage::korean);
    f.startWithAudio();
    f.speech.script->end(QString("out of memory"));
    QCOMPARE(f.events, QStringList{"failure 인식 오류: out of memory"});
    f.stop();
  }

  /// While captions are being switched, a failure event would not stop them.
  void recognitionErrorDuringTheStartFailsTheStart() {
    Fixture f;
    f.audio.script->isSlow = true;
    QCoro::Task<> starting = f.engine->start("en_US", {});
    test::settle();
    f.speech.script->end(QString("out of memory"));
    QCOMPARE(test::failureOf(std::move(starting)), QString("Recognition error: out of memory"));
    QVERIFY(f.events.filter("failure").isEmpty());
    QVERIFY(!f.audio.source);
    f.audio.script->isSlow = false;
    QCOMPARE(f.start(), QString());
    f.stop();
  }

  void stopInsideTheFailureEventCompletes() {
    Fixture f;
    f.startWithAudio();
    std::optional<QCoro::Task<>> stopping;
    QObject::connect(f.engine.get(), &SpeechRecognizing::eventOccurred, [&] {
      if (!stopping) stopping.emplace(f.engine->stop());
    });
    f.speech.script->end(QString("gone"));
    QVERIFY(stopping.has_value());
    test::await(std::move(*stopping));
    QVERIFY(f.engine->meterBands().empty());
  }

  void meterIsEmptyAQuarterSecondAfterTheAudio() {
    Fixture f;
    QVERIFY(f.engine->meterBands().empty());
    f.start();
    f.playBuffer();
    QCOMPARE(f.engine->meterBands().size(), std::size_t(11));
    f.clock.advance(249ms);
    QCOMPARE(f.engine->meterBands().size(), std::size_t(11));
    f.clock.advance(1ms);
    QVERIFY(f.engine->meterBands().empty());
    f.stop();
    QVERIFY(f.engine->meterBands().empty());
  }

  void engineCanBeDestroyedWhileItStartsOrRuns() {
    Fixture f;
    const auto offer = std::make_shared<test::ScriptedModelOffer>();
    f.speech.script->offer = offer;
    QCoro::Task<> starting = f.engine->start("en_US", {});
    test::settle();
    f.engine.reset();
    offer->outcome.complete(true);
    QVERIFY_THROWS_EXCEPTION(Cancelled, test::await(std::move(starting)));

    Fixture g;
    g.startWithAudio();
    g.engine.reset();
    QCOMPARE(g.audio.script->calls.last(), QString("stop"));
    QCOMPARE(g.clock.scheduledCount(), std::size_t(0));
  }

  void engineDestroyedWhileItStopsLeavesNoThread() {
    test::ManualClock clock;
    test::ScriptedAudioPlatform audio;
    const auto recognizer = std::make_shared<test::ScriptedRecognizerProvider>(
        QStringList{"en_US"}, QStringList{"en_US"});
    LocalSpeechPlatform speech({recognizer}, clock);
    auto engine = std::make_unique<SpeechRecognitionEngine>(speech, audio, clock);
    test::await(engine->start("en_US", {}));
    recognizer->script->isSlow = true;
    audio.script->handler(test::tone(440, 0.1F, 1600));
    VERIFY_SOON(recognizer->script->isWaiting);
    QCoro::Task<> stopping = engine->stop();
    QCOMPARE(recognizer->script->alive.load(), 1);
    engine.reset();
    QCOMPARE(recognizer->script->alive.load(), 0);
    test::await(std::move(stopping));
  }
};

QTEST_GUILESS_MAIN(SpeechRecognitionEngineTest)
#include "speech_recognition_engine_test.moc"
