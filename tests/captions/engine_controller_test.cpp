// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/engine_controller.h"

#include "audio/speech_recognition_engine.h"
#include "captions/engine_controller_fixture.h"
#include "platform/speech/local_speech_platform.h"
#include "support/manual_clock.h"
#include "support/scripted_audio_platform.h"
#include "support/scripted_recognizer_backend.h"
#include "support/suite.h"

using namespace velun;
using test::settle;
using Fixture = test::EngineControllerFixture;

class EngineControllerTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void isRunningBeforeTheEngineHasStarted() {
    Fixture fixture;
    fixture.controller->start();
    QVERIFY(fixture.controller->isRunning() && fixture.controller->isTransitioning());
    QCOMPARE(fixture.engine->calls, QStringList());
    settle();
    QVERIFY(fixture.controller->isRunning() && !fixture.controller->isTransitioning());
    QCOMPARE(fixture.takeSignals(), QStringList({"isRunning", "isTransitioning", "isSwitching",
                                                 "isTransitioning", "isSwitching"}));
  }

  void startingTwiceStartsTheEngineOnce() {
    Fixture fixture;
    fixture.controller->start();
    fixture.controller->start();
    settle();
    fixture.controller->start();
    settle();
    QCOMPARE(fixture.engine->calls.count("started"), 1);
  }

  void startsWithTheSettingsOfThatMoment() {
    Fixture fixture;
    fixture.engine->holdsStops = true;
    fixture.start();
    fixture.settings.setUseMic(true);
    fixture.settings.setLocaleID("ko_KR");
    fixture.engine->holdsStops = false;
    fixture.engine->release();
    settle();
    QCOMPARE(fixture.engine->calls.filter("start ").first(), QString("start ko_KR microphone"));
  }

  void capturesTheChosenDeviceOfTheInput() {
    Fixture fixture;
    fixture.settings.setOutput({"hdmi", "Television"});
    fixture.settings.setMicrophone({"usb-mic", "Desk Microphone"});
    fixture.start();
    QCOMPARE(fixture.engine->calls.filter("start ").last(), QString("start en_US computer hdmi"));
    fixture.settings.setUseMic(true);
    fixture.controller->restart();
    settle();
    QCOMPARE(fixture.engine->calls.filter("start ").last(),
             QString("start en_US microphone usb-mic"));
  }

  void isNotRunningAsSoonAsItIsStopped() {
    Fixture fixture;
    fixture.start();
    fixture.engine->calls.clear();
    fixture.controller->stop();
    QVERIFY(!fixture.controller->isRunning());
    QVERIFY(fixture.controller->isTransitioning());
    QCOMPARE(fixture.engine->calls, QStringList());
    settle();
    QVERIFY(!fixture.controller->isTransitioning());
    QCOMPARE(fixture.engine->calls, QStringList({"stop", "stopped"}));
  }

  void stoppingWhileStoppedDoesNothing() {
    Fixture fixture;
    fixture.stop();
    QCOMPARE(fixture.engine->calls, QStringList());
    QCOMPARE(fixture.takeSignals(), QStringList());
  }

  void stoppingDuringATransitionIsIgnored() {
    Fixture fixture;
    fixture.engine->holdsStarts = true;
    fixture.start();
    fixture.stop();
    QVERIFY(fixture.controller->isRunning());
    fixture.engine->release();
    settle();
    QVERIFY(fixture.controller->isRunning());
    QVERIFY(!fixture.controller->isTransitioning());
  }

  void shutdownCancelsAStartThatHasNotBegun() {
    Fixture fixture;
    fixture.controller->start();
    fixture.shutdown();
    QCOMPARE(fixture.engine->calls, QStringList({"stop", "stopped"}));
    QVERIFY(!fixture.controller->isRunning());
    QVERIFY(!fixture.controller->isTransitioning());
    QVERIFY(fixture.tasks[0].isReady());
  }

  void shutdownDropsARestartQueuedBehindARunningStart() {
    Fixture fixture;
    fixture.engine->holdsStarts = true;
    fixture.start();
    fixture.settings.setUseMic(true);
    fixture.shutdown();
    QCOMPARE(fixture.engine->calls, QStringList({"stop", "stopped", "start en_US computer",
                                                 "start failed", "stop", "stopped"}));
    QVERIFY(!fixture.controller->isTransitioning());
    QCOMPARE(fixture.engine->overlaps, 0);
  }

  void aTransitionEndsWithItsLastOperation() {
    Fixture fixture;
    fixture.engine->holdsStarts = true;
    fixture.start();
    fixture.engine->holdsStops = true;
    fixture.shutdown();
    // The cancelled start has ended; the stop behind it has not.
    QCOMPARE(fixture.engine->calls.last(), QString("stop"));
    QVERIFY(fixture.controller->isTransitioning());
    QVERIFY(!fixture.tasks[0].isReady());
    fixture.engine->release();
    settle();
    QVERIFY(!fixture.controller->isTransitioning());
    QVERIFY(fixture.tasks[0].isReady());
  }

  void twoShutdownsBothWaitForTheEngine() {
    Fixture fixture;
    fixture.start();
    fixture.engine->holdsStops = true;
    fixture.shutdown();
    fixture.shutdown();
    QVERIFY(!fixture.tasks[0].isReady() && !fixture.tasks[1].isReady());
    fixture.engine->holdsStops = false;
    fixture.engine->release();
    settle();
    QVERIFY(fixture.tasks[0].isReady() && fixture.tasks[1].isReady());
    QVERIFY(!fixture.controller->isTransitioning());
  }

  void startingDuringAStopIsIgnored() {
    Fixture fixture;
    fixture.start();
    fixture.engine->holdsStops = true;
    fixture.stop();
    fixture.controller->start();
    QVERIFY(!fixture.controller->isRunning());
    fixture.engine->release();
    settle();
    QVERIFY(!fixture.controller->isRunning());
    QCOMPARE(fixture.engine->calls.last(), QString("stopped"));
  }

  void aRestartBehindAFailedStartDoesNotStart() {
    Fixture fixture;
    fixture.engine->holdsStarts = true;
    fixture.start();
    fixture.settings.setUseMic(true);
    QVERIFY(fixture.controller->isTransitioning());
    fixture.engine->fail("broken");
    settle();
    QCOMPARE(fixture.engine->calls, QStringList({"stop", "stopped", "start en_US computer",
                                                 "start failed", "stop", "stopped"}));
    QVERIFY(!fixture.controller->isRunning() && !fixture.controller->isTransitioning());
    QCOMPARE(fixture.takeSignals().filter("failed"), QStringList({"start failed: broken"}));
  }

  void theMeterIsEmptyWhileCaptionsAreOff() {
    Fixture fixture;
    fixture.engine->bands = {-20.0F, -30.0F};
    QVERIFY(fixture.controller->meterBands().empty());
    fixture.start();
    QCOMPARE(fixture.controller->meterBands(), std::vector<float>({-20.0F, -30.0F}));
    fixture.controller->stop();
    QVERIFY(fixture.controller->meterBands().empty());
    settle();
  }

  void destructionDestroysAnEngineThatStarts() {
    Fixture fixture;
    fixture.engine->holdsStarts = true;
    fixture.engine->ignoresStopRequests = true;
    fixture.start();
    const QPointer<test::ScriptedRecognizer> engine(fixture.recognizer);
    fixture.takeSignals();
    fixture.controller.reset();
    QVERIFY(!engine);
    fixture.engine->release();
    settle();
    QCOMPARE(fixture.takeSignals(), QStringList());
  }

  void aStartThatSucceedsAfterAShutdownIsStopped() {
    Fixture fixture;
    fixture.engine->holdsStarts = true;
    fixture.engine->ignoresStopRequests = true;
    fixture.start();
    fixture.shutdown();
    fixture.engine->release();
    settle();
    QCOMPARE(fixture.engine->calls.mid(3), QStringList({"started", "stop", "stopped"}));
    QVERIFY(!fixture.controller->isRunning() && !fixture.controller->isTransitioning());
  }

  void stoppedComesBeforeTheEndOfTheTransition() {
    Fixture fixture;
    fixture.start();
    fixture.engine->lastWords = {FinalEvent{"The end.", "en_US", AudioInput::computer}};
    fixture.takeSignals();
    fixture.stop();
    QCOMPARE(fixture.takeSignals(),
             QStringList({"isRunning", "isTransitioning", "isSwitching", "event", "stopped",
                          "isTransitioning", "isSwitching"}));
  }

  void restartingWhileOffDoesNothing() {
    Fixture fixture;
    fixture.controller->restart();
    settle();
    QCOMPARE(fixture.engine->calls, QStringList());
    QCOMPARE(fixture.takeSignals(), QStringList());
  }

  void abandoningCompletesAShutdownThatWaits() {
    Fixture fixture;
    fixture.start();
    fixture.engine->holdsStops = true;
    fixture.shutdown();
    QVERIFY(!fixture.tasks[0].isReady());
    fixture.controller->abandon();
    settle();
    QVERIFY(fixture.tasks[0].isReady());
    fixture.engine->release();
    settle();
  }

  void destructionEndsTheThreadsOfAStopThatWaits_data() {
    QTest::addColumn<bool>("isAbandoned");
    QTest::newRow("destroyed") << false;
    QTest::newRow("abandoned before") << true;
  }
  void destructionEndsTheThreadsOfAStopThatWaits() {
    QFETCH(bool, isAbandoned);
    test::ManualClock clock;
    test::ScriptedAudioPlatform audio;
    const auto provider = std::make_shared<test::ScriptedRecognizerProvider>(QStringList{"en_US"},
                                                                             QStringList{"en_US"});
    provider->script->isSlow = true;
    LocalSpeechPlatform speech({provider}, clock);
    AppSettings settings;
    auto controller = std::make_unique<EngineController>(
        settings, std::make_unique<SpeechRecognitionEngine>(speech, audio, clock));
    controller->start();
    VERIFY_SOON(audio.script->handler);
    audio.script->handler(std::vector<float>(1600, 0.1F));
    VERIFY_SOON(provider->script->isWaiting);
    const QCoro::Task<> stopping = controller->shutdown();
    settle();
    QVERIFY(!stopping.isReady());
    if (isAbandoned) controller->abandon();
    controller.reset();
    QCOMPARE(provider->script->alive.load(), 0);
    settle();
    QVERIFY(stopping.isReady());
  }
};

QTEST_GUILESS_MAIN(EngineControllerTest)
#include "engine_controller_test.moc"
