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

namespace {

QCoro::Task<> noteShutdown(CaptionViewModel& model, bool& isOver) {
  QCoro::Task<> shutdown = model.shutdown();
  co_await shutdown;
  isOver = true;
}

}  // namespace

class TerminationTest final : public Suite {
  Q_OBJECT

 private Q_SLOTS:
  void aSignalQuitsLikeTheUser() {
    AppStage stage;
    stage.startWithLine();
    stage.question.answers = {cancelDiscarding};
    stage.delegate->terminationSignalled();
    settle();
    QCOMPARE(stage.question.asked.size(), std::size_t(1));
    QVERIFY(stage.model->isRunning());
    // The user cancelled: no call is scheduled that would end the program later.
    QCOMPARE(stage.clock.scheduledCount(), scheduledWithoutSignal());
  }

  void tenSecondsEndAnEngineThatDoesNotStop() {
    AppStage stage([](AppSettings& settings) { settings.setAutoSaveSessions(true); });
    stage.startWithLine();
    stage.engine->holdsStops = true;
    stage.delegate->terminationSignalled();
    settle();
    stage.final("Said while stopping.");
    QFile::remove(QDir(stage.store.directory.toLocalFile()).filePath(stage.files().value(0)));
    stage.clock.advance(9999ms);
    QVERIFY(stage.files().isEmpty());
    stage.clock.advance(1ms);
    // The file was written once more before the program ended.
    QCOMPARE(test::savedSessions(stage.store).at(0).session.lines.size(), std::size_t(2));
    stage.engine->release();
    settle();
    QVERIFY(!stage.model->isRunning());
  }

  void aSecondSignalEndsAtOnce() {
    AppStage stage;
    stage.startWithLine();
    stage.engine->holdsStops = true;
    stage.question.answers = {cancelDiscarding};
    stage.delegate->terminationSignalled();
    settle();
    stage.delegate->terminationSignalled();
    stage.engine->release();
    settle();
    QVERIFY(stage.question.asked.empty());
    QVERIFY(!stage.model->isRunning());
  }

  void terminationCompletesPendingShutdowns() {
    AppStage stage;
    stage.startWithLine();
    stage.engine->holdsStops = true;
    bool isOver = false;
    startTask(stage.model.get(), [&] { return noteShutdown(*stage.model, isOver); });
    settle();
    stage.delegate->terminationSignalled();
    settle();
    stage.delegate->terminationSignalled();
    QVERIFY(!isOver);
    stage.delegate->applicationWillTerminate();
    QVERIFY(isOver);
    stage.engine->release();
    settle();
  }

  void terminationCompletesShutdownsStartedDuringIt() {
    AppStage stage;
    stage.startWithLine();
    stage.engine->holdsStops = true;
    bool isOver = false;
    startTask(stage.model.get(), [&] { return noteShutdown(*stage.model, isOver); });
    stage.delegate->applicationWillTerminate();
    QVERIFY(isOver);
    stage.engine->release();
    settle();
  }

 private:
  /// What is scheduled in a program with captions on.
  static std::size_t scheduledWithoutSignal() {
    AppStage stage;
    stage.startWithLine();
    stage.question.answers = {cancelDiscarding};
    stage.requestQuit();
    return stage.clock.scheduledCount();
  }
};

QTEST_MAIN(TerminationTest)
#include "termination_test.moc"
