// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/engine_controller.h"

#include "audio/speech_recognition_engine.h"
#include "platform/speech/local_speech_platform.h"
#include "settings/app_settings.h"
#include "support/manual_clock.h"
#include "support/scripted_audio_platform.h"
#include "support/scripted_recognizer.h"
#include "support/scripted_recognizer_backend.h"
#include "support/settle.h"
#include "support/suite.h"

#include <memory>

using namespace velun;
using test::settle;

namespace {

/// A controller of a scripted engine, with a list of the signals that it emitted.
struct Fixture {
  using Script = test::ScriptedRecognizer::Script;

  Fixture() {
    auto owned = std::make_unique<test::ScriptedRecognizer>(engine);
    recognizer = owned.get();
    controller = std::make_unique<EngineController>(settings, std::move(owned));
    EngineController* const observed = controller.get();
    const auto log = [this, observed](void (EngineController::*signal)(), const char* name) {
      QObject::connect(observed, signal, [this, name] { signalled.append(name); });
    };
    log(&EngineController::isRunningChanged, "isRunning");
    log(&EngineController::isTransitioningChanged, "isTransitioning");
    log(&EngineController::isSwitchingChanged, "isSwitching");
    log(&EngineController::stopped, "stopped");
    QObject::connect(observed, &EngineController::eventOccurred,
                     [this] { signalled.append("event"); });
    QObject::connect(observed, &EngineController::startFailed,
                     [this](const std::optional<QString>& description) {
                       signalled.append("start failed: " + description.value_or("cancelled"));
                     });
    QObject::connect(&settings, &AppSettings::useMicChanged, observed, &EngineController::restart);
  }

  void start() {
    controller->start();
    settle();
  }
  void startDownload() {
    engine->holdsStarts = true;
    engine->downloads = true;
    start();
  }
  void stop() {
    controller->stop();
    settle();
  }
  void shutdown() {
    tasks.push_back(controller->shutdown());
    settle();
  }

  QStringList takeSignals() { return std::exchange(signalled, {}); }

  AppSettings settings;
  std::shared_ptr<Script> engine = std::make_shared<Script>();
  test::ScriptedRecognizer* recognizer = nullptr;
  QStringList signalled;
  std::vector<QCoro::Task<>> tasks;
  std::unique_ptr<EngineController> controller;
};

}  // namespace

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

  void aDownloadIsNoSwitch() {
    Fixture fixture;
    fixture.startDownload();
    QVERIFY(fixture.controller->isTransitioning() && !fixture.controller->isSwitching());
    QCOMPARE(fixture.takeSignals(),
             QStringList({"isRunning", "isTransitioning", "isSwitching", "isSwitching"}));
    fixture.engine->release();
    settle();
    QVERIFY(fixture.controller->isRunning() && !fixture.controller->isTransitioning());
    QCOMPARE(fixture.takeSignals(), QStringList({"isSwitching", "isTransitioning", "isSwitching"}));
  }

  void stoppingCancelsADownload() {
    Fixture fixture;
    fixture.startDownload();
    fixture.controller->stop();
    QVERIFY(fixture.engine->isStopRequested);
    QVERIFY(!fixture.controller->isRunning() && fixture.controller->isSwitching());
    settle();
    QVERIFY(fixture.controller->isStopped() && !fixture.controller->isSwitching());
    QCOMPARE(fixture.engine->calls.mid(3), QStringList({"start failed", "stop", "stopped"}));
    QCOMPARE(fixture.takeSignals().filter("start failed"), QStringList{"start failed: cancelled"});
    fixture.engine->holdsStarts = false;
    fixture.start();
    QCOMPARE(fixture.engine->calls.last(), QString("started"));
  }

  void aRestartCancelsADownload() {
    Fixture fixture;
    fixture.startDownload();
    fixture.takeSignals();
    fixture.engine->holdsStarts = false;
    fixture.settings.setUseMic(true);
    QVERIFY(fixture.engine->isStopRequested);
    settle();
    QCOMPARE(fixture.engine->calls.mid(3),
             QStringList({"start failed", "stop", "stopped", "start en_US microphone", "started"}));
    QVERIFY(fixture.controller->isRunning() && !fixture.controller->isTransitioning());
    QVERIFY(!fixture.takeSignals().contains("isRunning"));
  }

  void onlyTheLastOfManyRestartsDuringADownloadStarts() {
    Fixture fixture;
    fixture.startDownload();
    for (const bool useMic : {true, false, true}) fixture.settings.setUseMic(useMic);
    settle();
    QCOMPARE(fixture.engine->calls.filter("start en_US"),
             QStringList({"start en_US computer", "start en_US microphone"}));
    QVERIFY(fixture.controller->isRunning() && !fixture.controller->isSwitching());
    fixture.stop();
    QVERIFY(fixture.controller->isStopped());
  }

  void aRestartThatReplacesADownloadCanBeShutDown() {
    Fixture fixture;
    fixture.startDownload();
    fixture.settings.setUseMic(true);
    fixture.shutdown();
    QVERIFY(fixture.controller->isStopped());
    QCOMPARE(fixture.engine->calls.filter("start en_US").size(), 1);
    QVERIFY(fixture.tasks[0].isReady());
  }

  void aFailureOfAReplacedDownloadIsNotReported() {
    Fixture fixture;
    fixture.engine->ignoresStopRequests = true;
    fixture.startDownload();
    fixture.settings.setUseMic(true);
    fixture.engine->holdsStarts = false;
    fixture.engine->fail("no connection");
    settle();
    QCOMPARE(fixture.engine->calls.last(), QString("started"));
    QVERIFY(fixture.controller->isRunning());
    QVERIFY(fixture.takeSignals().filter("failed").isEmpty());
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
