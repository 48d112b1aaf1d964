// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/engine_controller_fixture.h"
#include "support/suite.h"

using namespace velun;
using test::settle;
using Fixture = test::EngineControllerFixture;

/// `EngineController` while the engine downloads a model.
class EngineDownloadControlTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
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
};

QTEST_GUILESS_MAIN(EngineDownloadControlTest)
#include "engine_download_control_test.moc"
