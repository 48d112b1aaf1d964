// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/app_stage.h"
#include "support/saved_sessions.h"
#include "support/suite.h"

using namespace velun;
using namespace velun::test;
using namespace std::chrono_literals;

class LogOutAgreementTest final : public Suite {
  Q_OBJECT

  /// Sends the event by which Qt reports the end, and returns whether the program ends.
  static bool end(AppStage& stage) {
    bool isOver = true;
    QObject context;
    const auto report = [&] {
      QEvent quit(QEvent::Quit);
      QCoreApplication::sendEvent(qApp, &quit);
      settle();
      const auto isDecided = [&stage] {
        return !stage.coordinator().ending().isDeciding() && !stage.model->isSyncing();
      };
      QVERIFY(QTest::qWaitFor(isDecided));
      settle();
      // Not reached if the event loop was left.
      const auto giveUp = [&isOver] {
        isOver = false;
        QCoreApplication::exit();
      };
      QMetaObject::invokeMethod(&context, giveUp, Qt::QueuedConnection);
    };
    QMetaObject::invokeMethod(&context, report, Qt::QueuedConnection);
    QCoreApplication::exec();
    return isOver;
  }

 private Q_SLOTS:
  void captionsGoOnWhenTheEndDoesNotCome_data() {
    QTest::addColumn<bool>("hasLine");
    QTest::newRow("with a line that may go") << true;
    QTest::newRow("without lines") << false;
  }
  void captionsGoOnWhenTheEndDoesNotCome() {
    QFETCH(bool, hasLine);
    AppStage stage;
    stage.perform(AppCommand::toggleCaptions);
    if (hasLine) stage.final("One line.");
    stage.question.answers = {discardSession};
    QVERIFY(stage.delegate->logOut().agree());
    QVERIFY(!stage.model->isRunning());
    stage.clock.advance(LogOut::kResumeDelay - 1ms);
    QVERIFY(!stage.model->isRunning());
    stage.clock.advance(1ms);
    settle();
    QVERIFY(stage.model->isRunning());
    QCOMPARE(stage.model->lines().size(), std::size_t(hasLine));
    QVERIFY(!stage.model->session().endedAt);
    QCOMPARE(stage.question.asked.size(), std::size_t(hasLine));
  }

  void captionsThatWereOffStayOff() {
    AppStage stage;
    stage.startWithLine();
    stage.perform(AppCommand::toggleCaptions);
    stage.question.answers = {discardSession};
    QVERIFY(stage.delegate->logOut().agree());
    stage.clock.advance(LogOut::kResumeDelay);
    settle();
    QVERIFY(!stage.model->isRunning());
  }

  void captionsThatTheUserStartedAndStoppedStayOff() {
    AppStage stage;
    stage.perform(AppCommand::toggleCaptions);
    QVERIFY(stage.delegate->logOut().agree());
    stage.perform(AppCommand::toggleCaptions);
    QVERIFY(stage.model->isRunning());
    stage.perform(AppCommand::toggleCaptions);
    stage.clock.advance(LogOut::kResumeDelay);
    settle();
    QVERIFY(!stage.model->isRunning());
  }

  void aCancelledLogOutGoesOnAtOnce() {
    AppStage stage;
    stage.startWithLine();
    stage.question.answers = {cancelDiscarding};
    QVERIFY(!stage.delegate->logOut().agree());
    settle();
    QVERIFY(stage.model->isRunning());
    QVERIFY(!stage.delegate->logOut().isAgreed());
  }

  void aQuitThatIsCancelledMeanwhileTurnsCaptionsOn() {
    AppStage stage;
    stage.startWithLine();
    stage.question.answers = {discardSession, cancelDiscarding};
    QVERIFY(stage.delegate->logOut().agree());
    stage.requestQuit();
    QCOMPARE(stage.replies, std::vector({false}));
    QVERIFY(stage.model->isRunning());
  }

  void aSecondLogOutRemembersThatCaptionsWereOn() {
    AppStage stage;
    stage.startWithLine();
    stage.question.answers = {discardSession, cancelDiscarding};
    QVERIFY(stage.delegate->logOut().agree());
    QVERIFY(!stage.delegate->logOut().agree());
    settle();
    QVERIFY(stage.model->isRunning());
    QVERIFY(!stage.delegate->logOut().isAgreed());
  }

  void theAgreedEndEndsTheProgramWithoutAnotherQuestion_data() {
    QTest::addColumn<bool>("isLate");
    QTest::newRow("soon") << false;
    QTest::newRow("after captions went on") << true;
  }
  void theAgreedEndEndsTheProgramWithoutAnotherQuestion() {
    QFETCH(bool, isLate);
    AppStage stage;
    stage.startWithLine();
    stage.question.answers = {discardSession};
    QVERIFY(stage.delegate->logOut().agree());
    if (isLate) stage.clock.advance(LogOut::kResumeDelay);
    settle();
    QCOMPARE(stage.model->isRunning(), isLate);
    QVERIFY(end(stage));
    QVERIFY(!stage.model->isRunning());
    QCOMPARE(stage.question.asked.size(), std::size_t(1));
    QVERIFY(stage.files().isEmpty());
  }

  void aLateEndSavesWhatIsSaidMeanwhile() {
    AppStage stage([](AppSettings& settings) { settings.setAutoSaveSessions(true); });
    stage.startWithLine();
    QVERIFY(stage.delegate->logOut().agree());
    stage.clock.advance(LogOut::kResumeDelay);
    settle();
    stage.final("Another line.");
    QVERIFY(end(stage));
    QVERIFY(stage.question.asked.empty());
    const SessionListing listing = test::listingOf(stage.store);
    QCOMPARE(listing.sessions.size(), std::size_t(1));
    QCOMPARE(listing.sessions[0]->summary.lineCount, std::size_t(2));
    QVERIFY(listing.sessions[0]->summary.endedAt);
  }

  void linesAfterTheAgreementAreAskedAbout_data() {
    QTest::addColumn<bool>("isLastWords");
    QTest::newRow("finished before the end") << false;
    QTest::newRow("finished by the end") << true;
  }
  void linesAfterTheAgreementAreAskedAbout() {
    QFETCH(bool, isLastWords);
    AppStage stage;
    stage.startWithLine();
    stage.question.answers = {discardSession};
    QVERIFY(stage.delegate->logOut().agree());
    stage.clock.advance(LogOut::kResumeDelay);
    settle();
    const FinalEvent event{"Another line.", "en_US", AudioInput::computer};
    if (isLastWords) {
      stage.engine->lastWords = {event};
    } else {
      stage.final(event.text);
    }
    stage.question.answers = {saveSession};
    QVERIFY(end(stage));
    QCOMPARE(stage.question.asked.size(), std::size_t(2));
    QCOMPARE(test::savedSessions(stage.store).at(0).session.lines.size(), std::size_t(2));
  }

  void anAgreementIsNotValidForAnotherEnd() {
    AppStage stage;
    stage.startWithLine();
    stage.question.answers = {discardSession};
    QVERIFY(stage.delegate->logOut().agree());
    stage.final("Another line.");
    stage.question.answers = {cancelDiscarding, cancelDiscarding};
    QVERIFY(!end(stage));
    QVERIFY(!end(stage));
    QCOMPARE(stage.question.asked.size(), std::size_t(3));
  }

  void anImposedEndAsksNothing() {
    AppStage stage;
    stage.startWithLine();
    stage.delegate->logOut().prepareUnasked();
    QVERIFY(stage.model->isRunning());
    QVERIFY(end(stage));
    QVERIFY(stage.question.asked.empty());
  }

  void theNextLogOutAsksAgainAfterAnImposedOneWasCancelled() {
    AppStage stage;
    stage.startWithLine();
    stage.delegate->logOut().prepareUnasked();
    stage.question.answers = {cancelDiscarding};
    QVERIFY(!stage.delegate->logOut().agree());
    QCOMPARE(stage.question.asked.size(), std::size_t(1));
    QVERIFY(!stage.delegate->logOut().isAgreed());
  }

  void nothingIsStartedAfterTheEnd() {
    AppStage stage;
    stage.startWithLine();
    stage.question.answers = {discardSession};
    QVERIFY(stage.delegate->logOut().agree());
    QVERIFY(end(stage));
    stage.clock.advance(LogOut::kResumeDelay);
    settle();
    QVERIFY(!stage.model->isRunning());
  }
};

QTEST_MAIN(LogOutAgreementTest)
#include "log_out_agreement_test.moc"
