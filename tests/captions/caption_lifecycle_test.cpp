// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/model_fixture.h"
#include "language/localization.h"
#include "support/suite.h"

using namespace velun;
using namespace std::chrono_literals;
using test::ModelFixture;
using test::settle;

class CaptionLifecycleTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void aNewModelIsStoppedAndEmpty() {
    ModelFixture fixture;
    const CaptionViewModel& model = *fixture.model;
    QVERIFY(!model.isRunning());
    QVERIFY(!model.isTransitioning());
    QVERIFY(model.lines().empty());
    QCOMPARE(model.volatileText(), QString());
    QVERIFY(!model.status() && !model.translationStatus() && !model.savedURL());
    QVERIFY(!model.saveError() && !model.isSavingSession() && !model.hasUnsavedSession());
    QVERIFY(model.locales().isEmpty() && model.languages().isEmpty());
    QCOMPARE(model.session().startedAt, fixture.clock.now());
  }

  void isRunningBeforeTheTransitionEnds() {
    ModelFixture fixture;
    fixture.model->start();
    QVERIFY(fixture.model->isRunning());
    QVERIFY(fixture.model->isTransitioning());
    QCOMPARE(fixture.engine->calls, QStringList());
    settle();
    QVERIFY(fixture.model->isRunning());
    QVERIFY(!fixture.model->isTransitioning());
    QCOMPARE(fixture.engine->calls,
             QStringList({"stop", "stopped", "start en_US computer", "started"}));
    QCOMPARE(fixture.takeSignals(), QStringList({"isRunning", "isTransitioning", "isSwitching",
                                                 "isTransitioning", "isSwitching"}));
  }

  void shutdownCancelsARunningDownload() {
    ModelFixture fixture;
    fixture.engine->holdsStarts = true;
    fixture.start();
    fixture.status(QString("Downloading speech model…"));
    fixture.shutdown();
    QVERIFY(fixture.engine->isStopRequested);
    QVERIFY(fixture.tasks[0].isReady());
    QVERIFY(!fixture.model->status());
    QVERIFY(!fixture.model->isRunning());
  }

  void aFailedStartIsReportedAsStatus() {
    ModelFixture fixture;
    fixture.engine->startFailure = "Klingon isn’t a supported language";
    fixture.start();
    QVERIFY(!fixture.model->isRunning());
    QVERIFY(!fixture.model->isTransitioning());
    QCOMPARE(fixture.model->status(), std::optional<QString>("Klingon isn’t a supported language"));
    fixture.start();
    QVERIFY(fixture.model->isRunning());
  }

  void aFailedStartKeepsTheLines() {
    ModelFixture fixture;
    fixture.start();
    fixture.final("One.");
    fixture.engine->startFailure = "no microphone";
    fixture.settings.setUseMic(true);
    settle();
    QVERIFY(!fixture.model->isRunning());
    QCOMPARE(fixture.texts(), QStringList({"One."}));
  }

  void anotherInputRestartsTheEngineWhileRunning() {
    ModelFixture fixture;
    fixture.start();
    fixture.final("One.");
    fixture.engine->calls.clear();
    fixture.takeSignals();
    fixture.settings.setUseMic(true);
    QVERIFY(fixture.model->isTransitioning());
    settle();
    QCOMPARE(fixture.engine->calls,
             QStringList({"stop", "stopped", "start en_US microphone", "started"}));
    QVERIFY(fixture.model->isRunning());
    QVERIFY(!fixture.model->session().endedAt);
    QCOMPARE(fixture.texts(), QStringList({"One."}));
    QCOMPARE(fixture.takeSignals(),
             QStringList({"isTransitioning", "isSwitching", "isTransitioning", "isSwitching"}));
  }

  void settingsRestartTheEngineOrReconfigureTranslation_data() {
    QTest::addColumn<QString>("setting");
    QTest::addColumn<bool>("restarts");
    QTest::addColumn<bool>("reconfigures");
    QTest::newRow("input") << "input" << true << false;
    QTest::newRow("source language") << "source" << true << true;
    QTest::newRow("target language") << "target" << false << true;
    QTest::newRow("translation") << "translation" << false << true;
  }
  void settingsRestartTheEngineOrReconfigureTranslation() {
    QFETCH(QString, setting);
    ModelFixture fixture([](AppSettings& settings) { settings.setTranslate(true); });
    fixture.start();
    fixture.engine->calls.clear();
    const auto before = fixture.translation.scripts.back();
    if (setting == "input") fixture.settings.setUseMic(true);
    if (setting == "source") fixture.settings.setLocaleID("fr_FR");
    if (setting == "target") fixture.settings.setTargetID("ja");
    if (setting == "translation") fixture.settings.setTranslate(false);
    QTEST(fixture.model->isTransitioning(), "restarts");
    settle();
    QTEST(!fixture.engine->calls.isEmpty(), "restarts");
    QTEST(!before->isOpen, "reconfigures");
  }

  void settingsChangedWhileStoppedApplyToTheNextStart() {
    ModelFixture fixture;
    fixture.settings.setUseMic(true);
    fixture.settings.setLocaleID("ko_KR");
    settle();
    QCOMPARE(fixture.engine->calls, QStringList());
    QVERIFY(!fixture.model->isTransitioning());
    fixture.start();
    QCOMPARE(fixture.engine->calls[2], QString("start ko_KR microphone"));
  }

  void stoppingSetsTheEndOfTheSession() {
    ModelFixture fixture;
    fixture.start();
    fixture.final("One.");
    fixture.draft("Tw");
    fixture.clock.advance(5s);
    fixture.stop();
    QCOMPARE(fixture.model->session().endedAt, std::optional(fixture.clock.now()));
    QCOMPARE(fixture.model->volatileText(), QString());
  }

  void shuttingDownLaterKeepsTheEnd() {
    ModelFixture fixture;
    fixture.start();
    fixture.final("One.");
    fixture.stop();
    const std::optional<Instant> end = fixture.model->session().endedAt;
    fixture.clock.advance(1h);
    fixture.shutdown();
    QVERIFY(end);
    QCOMPARE(fixture.model->session().endedAt, end);
  }

  void aFailedStartKeepsTheEnd() {
    ModelFixture fixture;
    fixture.start();
    fixture.final("One.");
    fixture.stop();
    const std::optional<Instant> end = fixture.model->session().endedAt;
    fixture.clock.advance(1h);
    fixture.engine->startFailure = "No microphone.";
    fixture.start();
    QVERIFY(!fixture.model->isRunning());
    QCOMPARE(fixture.model->session().endedAt, end);
  }

  void aFailedSwitchEndsTheSession() {
    ModelFixture fixture;
    fixture.start();
    fixture.final("One.");
    fixture.clock.advance(1min);
    fixture.engine->startFailure = "No microphone.";
    fixture.settings.setUseMic(true);
    settle();
    QVERIFY(!fixture.model->isRunning());
    const std::optional<Instant> end(fixture.clock.now());
    QCOMPARE(fixture.model->session().endedAt, end);
    fixture.clock.advance(1h);
    fixture.shutdown();
    QCOMPARE(fixture.model->session().endedAt, end);
  }

  void stoppingWithoutLinesSetsNoEnd() {
    ModelFixture fixture;
    fixture.start();
    fixture.stop();
    QVERIFY(!fixture.model->session().endedAt);
  }

  void resultsThatArriveWhileStoppingAreKept() {
    ModelFixture fixture;
    fixture.start();
    fixture.engine->lastWords = {FinalEvent{"The end.", "en_US", AudioInput::computer}};
    fixture.stop();
    QCOMPARE(fixture.texts(), QStringList({"The end."}));
    QVERIFY(fixture.model->session().endedAt);
  }

  void startingAgainContinuesTheSession() {
    ModelFixture fixture;
    fixture.start();
    const Instant began = fixture.model->session().startedAt;
    fixture.final("One.");
    fixture.stop();
    fixture.clock.advance(1min);
    fixture.start();
    QCOMPARE(fixture.model->session().startedAt, began);
    QVERIFY(!fixture.model->session().endedAt);
    QCOMPARE(fixture.texts(), QStringList({"One."}));
  }

  void startingAnEmptySessionSetsItsStart() {
    ModelFixture fixture;
    fixture.clock.advance(1h);
    fixture.start();
    QCOMPARE(fixture.model->session().startedAt, fixture.clock.now());
    fixture.stop();
    fixture.clock.advance(1h);
    fixture.start();
    QCOMPARE(fixture.model->session().startedAt, fixture.clock.now());
  }

  void newSessionReplacesEverything() {
    ModelFixture fixture;
    fixture.start();
    fixture.final("One.");
    fixture.failure("Recognition error: broken");
    settle();
    fixture.model->saveCurrentSession();
    fixture.breakStore();
    fixture.final("Two.");
    fixture.draft("Thr");
    QVERIFY(fixture.model->savedURL() && fixture.model->saveError());
    const QUuid before = fixture.model->session().id;
    fixture.clock.advance(1min);
    fixture.settings.setAutoSaveSessions(true);
    fixture.model->newSession();
    QVERIFY(fixture.model->session().id != before);
    QCOMPARE(fixture.model->session().startedAt, fixture.clock.now());
    QVERIFY(!fixture.model->session().endedAt);
    QVERIFY(fixture.model->lines().empty());
    QCOMPARE(fixture.model->volatileText(), QString());
    QVERIFY(!fixture.model->status() && !fixture.model->savedURL() && !fixture.model->saveError());
    QVERIFY(fixture.model->isSavingSession());
  }

  void newSessionTakesItsTitleFromTheInterfaceLanguage() {
    ModelFixture fixture;
    QCOMPARE(fixture.model->session().title, QString("Caption Session"));
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(fixture.model->session().title, QString("Caption Session"));
    fixture.model->newSession();
    QCOMPARE(fixture.model->session().title, QString("자막 세션"));
  }

  void aStoppedSessionWithLinesCanBeTranslated() {
    ModelFixture fixture;
    fixture.settings.setTranslate(true);
    QVERIFY(!fixture.model->translator().isActive());
    fixture.settings.setTranslate(false);
    fixture.start();
    fixture.final("One.");
    fixture.stop();
    QVERIFY(!fixture.model->translator().isActive());
    fixture.settings.setTranslate(true);
    QVERIFY(fixture.model->translator().isActive());
  }

  void newSessionEndsTheTranslationOfTheOldOne() {
    ModelFixture fixture([](AppSettings& settings) { settings.setTranslate(true); });
    fixture.start();
    fixture.final("One.");
    fixture.stop();
    QVERIFY(fixture.model->translator().isActive());
    fixture.model->newSession();
    QVERIFY(!fixture.model->translator().isActive());
  }

  void newSessionIsIgnoredWhileRunningOrInTransition() {
    ModelFixture fixture;
    const QUuid id = fixture.model->session().id;
    fixture.model->start();
    fixture.model->newSession();
    settle();
    fixture.model->newSession();
    fixture.model->stop();
    fixture.model->newSession();
    QCOMPARE(fixture.model->session().id, id);
    settle();
    fixture.model->newSession();
    QVERIFY(fixture.model->session().id != id);
  }

  void aFailureEventStopsTheEngine() {
    ModelFixture fixture;
    fixture.start();
    fixture.final("One.");
    fixture.engine->calls.clear();
    fixture.failure("Recognition error: the model broke");
    QCOMPARE(fixture.engine->calls, QStringList());
    QCOMPARE(fixture.model->status(), std::optional<QString>("Recognition error: the model broke"));
    settle();
    QCOMPARE(fixture.engine->calls, QStringList({"stop", "stopped"}));
    QVERIFY(!fixture.model->isRunning());
    QCOMPARE(fixture.model->status(), std::optional<QString>("Recognition error: the model broke"));
    QCOMPARE(fixture.texts(), QStringList({"One."}));
  }

  void aFailureEventDuringATransitionIsOnlyShown() {
    ModelFixture fixture;
    fixture.engine->holdsStarts = true;
    fixture.start();
    fixture.failure("Recognition error: early");
    QVERIFY(fixture.model->isRunning());
    fixture.engine->release();
    settle();
    QVERIFY(fixture.model->isRunning());
    QVERIFY(!fixture.model->isTransitioning());
  }

  void bothLanguageListsAreOffered() {
    ModelFixture fixture;
    fixture.locales = {"ko_KR", "en_US"};
    fixture.languages = {"ko", "en"};
    fixture.tasks.push_back(fixture.model->loadLanguages());
    settle();
    QCOMPARE(fixture.model->locales(), QStringList({"en_US", "ko_KR"}));
    QCOMPARE(fixture.model->languages(), QStringList({"en", "ko"}));
    QCOMPARE(fixture.takeSignals(), QStringList({"locales", "languages"}));
  }

  void destructionDuringAnOperationEmitsNothing_data() {
    QTest::addColumn<bool>("starting");
    QTest::newRow("during a start") << true;
    QTest::newRow("during a stop") << false;
  }
  void destructionDuringAnOperationEmitsNothing() {
    QFETCH(bool, starting);
    ModelFixture fixture;
    fixture.engine->holdsStarts = starting;
    fixture.engine->holdsStops = !starting;
    fixture.start();
    fixture.tasks.push_back(fixture.model->shutdown());
    fixture.takeSignals();
    fixture.model.reset();
    settle();
    fixture.engine->release();
    settle();
    QCOMPARE(fixture.takeSignals(), QStringList());
    QVERIFY(fixture.tasks[0].isReady());
    QVERIFY(!fixture.engine->isBusy());
    QVERIFY(!fixture.engine->isStarted);
  }

  void settingsMayChangeAfterDestruction() {
    ModelFixture fixture;
    fixture.start();
    fixture.model.reset();
    fixture.settings.setUseMic(true);
    fixture.settings.setTranslate(true);
    settle();
    QCOMPARE(fixture.engine->calls.count("started"), 1);
  }
};

QTEST_GUILESS_MAIN(CaptionLifecycleTest)
#include "caption_lifecycle_test.moc"
