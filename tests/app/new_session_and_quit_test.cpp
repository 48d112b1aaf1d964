// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/app_stage.h"
#include "app/session_library.h"
#include "language/localization.h"
#include "platform/foundation/main_task.h"
#include "support/saved_sessions.h"
#include "support/suite.h"

using namespace velun;
using namespace velun::test;
using namespace std::chrono_literals;

class NewSessionAndQuitTest final : public Suite {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void anEmptySessionIsReplacedWithoutAQuestion() {
    AppStage stage;
    const QUuid before = stage.model->session().id;
    stage.perform(AppCommand::newSession);
    QVERIFY(stage.question.asked.empty());
    QVERIFY(stage.model->session().id != before);
    QVERIFY(stage.isPanelShown());
    QVERIFY(!stage.model->isRunning());
  }

  void newSessionAsksAboutUnsavedLines() {
    AppStage stage;
    stage.startWithLine();
    stage.question.answers = {discardSession};
    stage.perform(AppCommand::newSession);
    QCOMPARE(stage.question.asked.size(), std::size_t(1));
    QCOMPARE(stage.question.asked[0].message,
             QString("Save this session before starting a new one?"));
    QVERIFY(stage.model->lines().empty());
    QVERIFY(stage.files().isEmpty());
    QVERIFY(stage.model->isRunning());
    QCOMPARE(stage.engine->calls,
             QStringList({"stop", "stopped", "start en_US computer", "started", "stop", "stopped",
                          "stop", "stopped", "start en_US computer", "started"}));
  }

  void newSessionCanSaveFirst() {
    AppStage stage;
    stage.startWithLine();
    stage.question.answers = {saveSession};
    stage.perform(AppCommand::newSession);
    QCOMPARE(stage.files().size(), 1);
    QVERIFY(stage.model->lines().empty());
    QVERIFY(!stage.model->isSavingSession());
    QVERIFY(stage.model->isRunning());
    QTRY_COMPARE(stage.coordinator().sessions().library().sessions().size(), std::size_t(1));
  }

  void aCancelledNewSessionGoesOnWithTheOldOne_data() {
    QTest::addColumn<bool>("wasRunning");
    QTest::newRow("captions on") << true;
    QTest::newRow("captions off") << false;
  }
  void aCancelledNewSessionGoesOnWithTheOldOne() {
    QFETCH(bool, wasRunning);
    AppStage stage;
    stage.startWithLine();
    if (!wasRunning) stage.perform(AppCommand::toggleCaptions);
    const QUuid before = stage.model->session().id;
    stage.question.answers = {cancelDiscarding};
    stage.perform(AppCommand::newSession);
    QCOMPARE(stage.model->session().id, before);
    QCOMPARE(stage.model->lines().size(), std::size_t(1));
    QCOMPARE(stage.model->isRunning(), wasRunning);
  }

  void aFailedSaveCancelsTheNewSession() {
    AppStage stage;
    stage.startWithLine();
    stage.breakStore();
    stage.question.answers = {saveSession, 0};
    stage.perform(AppCommand::newSession);
    QCOMPARE(stage.question.asked.size(), std::size_t(2));
    QCOMPARE(stage.model->lines().size(), std::size_t(1));
    QVERIFY(stage.model->isRunning());
  }

  void twoNewSessionsAtOnceAskOnce() {
    AppStage stage;
    stage.startWithLine();
    stage.question.answers = {cancelDiscarding, discardSession};
    stage.coordinator().ending().newSession();
    stage.coordinator().ending().newSession();
    settle();
    QCOMPARE(stage.question.asked.size(), std::size_t(1));
    QCOMPARE(stage.model->lines().size(), std::size_t(1));
  }

  void newSessionIsIgnoredWhileQuitting() {
    AppStage stage;
    stage.startWithLine();
    stage.question.answers = {cancelDiscarding, discardSession};
    stage.coordinator().ending().prepareToTerminate([](bool) {});
    stage.coordinator().ending().newSession();
    settle();
    QCOMPARE(stage.question.asked.size(), std::size_t(1));
    QCOMPARE(stage.question.asked[0].message, QString("Save this session before quitting?"));
    QCOMPARE(stage.model->lines().size(), std::size_t(1));
  }

  void quittingWithoutLinesAsksNothing() {
    AppStage stage;
    stage.requestQuit();
    QVERIFY(stage.question.asked.empty());
    QCOMPARE(stage.replies, std::vector({true}));
  }

  void quittingAsksAboutUnsavedLines_data() {
    QTest::addColumn<int>("answer");
    QTest::addColumn<bool>("quits");
    QTest::addColumn<int>("files");
    QTest::newRow("save") << int(saveSession) << true << 1;
    QTest::newRow("discard") << int(discardSession) << true << 0;
    QTest::newRow("cancel") << int(cancelDiscarding) << false << 0;
  }
  void quittingAsksAboutUnsavedLines() {
    QFETCH(int, answer);
    QFETCH(bool, quits);
    QFETCH(int, files);
    AppStage stage;
    stage.startWithLine();
    const QUuid session = stage.model->session().id;
    stage.question.answers = {answer};
    stage.requestQuit();
    QCOMPARE(stage.question.asked.size(), std::size_t(1));
    QCOMPARE(stage.question.asked[0].message, QString("Save this session before quitting?"));
    QCOMPARE(stage.replies, std::vector({quits}));
    QCOMPARE(stage.files().size(), files);
    QCOMPARE(stage.model->session().id, session);
    QCOMPARE(stage.model->isRunning(), !quits);
    QVERIFY(!stage.coordinator().ending().isTerminating());
  }

  void aCancelledQuitLeavesCaptionsOff() {
    AppStage stage;
    stage.startWithLine();
    stage.perform(AppCommand::toggleCaptions);
    stage.question.answers = {cancelDiscarding};
    stage.requestQuit();
    QCOMPARE(stage.replies, std::vector({false}));
    QVERIFY(!stage.model->isRunning());
  }

  void questionsAreLocalized() {
    AppStage stage;
    stage.settings.setLanguage(AppLanguage::korean);
    stage.startWithLine();
    stage.question.answers = {cancelDiscarding, cancelDiscarding};
    stage.perform(AppCommand::newSession);
    stage.requestQuit();
    QCOMPARE(stage.question.asked.size(), std::size_t(2));
    QCOMPARE(stage.question.asked[0].message, QString("새 세션을 시작하기 전에 저장할까요?"));
    QCOMPARE(stage.question.asked[1].message, QString("종료하기 전에 이 세션을 저장할까요?"));
  }

  void aClosedQuestionCancelsTheQuit() {
    AppStage stage;
    stage.startWithLine();
    stage.question.answers = {std::nullopt};
    stage.requestQuit();
    QCOMPARE(stage.replies, std::vector({false}));
    QVERIFY(stage.model->isRunning());
  }

  void aSecondQuitSharesTheQuestion() {
    AppStage stage;
    stage.startWithLine();
    stage.engine->holdsStops = true;
    stage.question.answers = {cancelDiscarding, discardSession};
    stage.requestQuit();
    QVERIFY(stage.coordinator().ending().isTerminating());
    stage.requestQuit();
    stage.engine->holdsStops = false;
    stage.engine->release();
    settle();
    QCOMPARE(stage.question.asked.size(), std::size_t(1));
    QCOMPARE(stage.replies, std::vector({false, false}));
    QVERIFY(stage.model->isRunning());
  }

  void quitWaitsForAPendingNewSession() {
    AppStage stage;
    stage.startWithLine();
    stage.engine->holdsStops = true;
    stage.perform(AppCommand::newSession);
    stage.requestQuit();
    stage.question.answers = {discardSession};
    stage.engine->holdsStops = false;
    stage.engine->release();
    settle();
    QCOMPARE(stage.question.asked.size(), std::size_t(1));
    QCOMPARE(stage.replies, std::vector({true}));
    QVERIFY(!stage.model->isRunning());
  }

  void aCancelledQuitDuringANewSessionTurnsCaptionsOnAgain() {
    AppStage stage;
    stage.startWithLine();
    const QUuid before = stage.model->session().id;
    stage.engine->holdsStops = true;
    stage.perform(AppCommand::newSession);
    stage.requestQuit();
    stage.question.answers = {cancelDiscarding};
    stage.engine->holdsStops = false;
    stage.engine->release();
    settle();
    QCOMPARE(stage.question.asked.size(), std::size_t(1));
    QCOMPARE(stage.question.asked[0].message, QString("Save this session before quitting?"));
    QCOMPARE(stage.replies, std::vector({false}));
    QCOMPARE(stage.model->session().id, before);
    QVERIFY(stage.model->isRunning());
  }

  void captionsCannotBeTurnedOnWhileADecisionIsDue_data() {
    QTest::addColumn<bool>("quits");
    QTest::newRow("new session") << false;
    QTest::newRow("quit") << true;
  }
  void captionsCannotBeTurnedOnWhileADecisionIsDue() {
    QFETCH(bool, quits);
    AppStage stage;
    stage.startWithLine();
    const QUuid before = stage.model->session().id;
    // At the earliest moment: the engine has just stopped, and the question comes next.
    connect(stage.model.get(), &CaptionViewModel::isTransitioningChanged, stage.model.get(), [&] {
      const bool isAtRest = !stage.model->isRunning() && !stage.model->isTransitioning();
      if (isAtRest) stage.coordinator().perform(AppCommand::toggleCaptions);
    });
    stage.question.answers = {discardSession};
    if (quits) {
      stage.requestQuit();
      QCOMPARE(stage.replies, std::vector({true}));
      QVERIFY(!stage.model->isRunning());
    } else {
      stage.perform(AppCommand::newSession);
      QVERIFY(stage.model->session().id != before);
      QVERIFY(stage.model->isRunning());
    }
    QCOMPARE(stage.question.asked.size(), std::size_t(1));
  }

  void aSessionThatIsBeingSavedIsWrittenWithItsEnd() {
    AppStage stage([](AppSettings& settings) { settings.setAutoSaveSessions(true); });
    stage.startWithLine();
    stage.engine->lastWords = {FinalEvent{"The last words.", "en_US", AudioInput::computer}};
    stage.coordinator().ending().prepareToTerminate(
        [&stage](bool shouldTerminate) { stage.replies.push_back(shouldTerminate); });
    // The program ends when the file is on the disk.
    VERIFY_SOON(!stage.replies.empty());
    QVERIFY(!stage.model->isSyncing());
    QVERIFY(stage.question.asked.empty());
    QCOMPARE(stage.replies, std::vector({true}));
    const SessionListing listing = test::listingOf(stage.store);
    QCOMPARE(listing.sessions.size(), std::size_t(1));
    QCOMPARE(listing.sessions[0]->summary.lineCount, std::size_t(2));
    QVERIFY(listing.sessions[0]->summary.endedAt);
  }

  void quittingLaterKeepsTheEndOfAStoppedSession() {
    AppStage stage([](AppSettings& settings) { settings.setAutoSaveSessions(true); });
    stage.startWithLine();
    stage.perform(AppCommand::toggleCaptions);
    const std::optional<Instant> end = stage.model->session().endedAt;
    QVERIFY(end);
    stage.clock.advance(3h);
    stage.requestQuit();
    QCOMPARE(stage.replies, std::vector({true}));
    QCOMPARE(stage.model->session().endedAt, end);
    QCOMPARE(test::savedSessions(stage.store).at(0).session.endedAt,
             std::optional(std::chrono::floor<std::chrono::seconds>(*end)));
  }

  void aNewSessionKeepsTheEndOfAStoppedOne() {
    AppStage stage;
    stage.startWithLine();
    stage.perform(AppCommand::toggleCaptions);
    const std::optional<Instant> end = stage.model->session().endedAt;
    stage.clock.advance(3h);
    stage.question.answers = {saveSession};
    stage.perform(AppCommand::newSession);
    QCOMPARE(test::savedSessions(stage.store).at(0).session.endedAt,
             std::optional(std::chrono::floor<std::chrono::seconds>(*end)));
  }

  void aCancelledQuitThatResumesCaptionsClearsTheEnd() {
    AppStage stage;
    stage.startWithLine();
    stage.question.answers = {cancelDiscarding};
    stage.requestQuit();
    QVERIFY(stage.model->isRunning());
    QVERIFY(!stage.model->session().endedAt);
  }

  void settingsCanDiscardUnsavedLinesWithoutAQuestion() {
    AppStage stage([](AppSettings& settings) { settings.setAskBeforeDiscarding(false); });
    stage.startWithLine();
    stage.requestQuit();
    QVERIFY(stage.question.asked.empty());
    QCOMPARE(stage.replies, std::vector({true}));
  }
};

QTEST_MAIN(NewSessionAndQuitTest)
#include "new_session_and_quit_test.moc"
