// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/foundation/main_task.h"

#include "platform/foundation/failure.h"
#include "platform/foundation/one_shot.h"
#include "platform/foundation/system_clock.h"
#include "support/suite.h"

#include <thread>

using namespace velun;

namespace {

QCoro::Task<> note(int* calls) {
  ++*calls;
  co_return;
}

QCoro::Task<> failing() {
  throw Failure(QStringLiteral("it went wrong"));
  co_return;
}

QCoro::Task<> keepAnswer(OneShot<int> question, int* result) {
  *result = co_await question;
}

QCoro::Task<> keepFailure(OneShot<int> question, QString* result) {
  try {
    const int answer = co_await question;
    *result = QString::number(answer);
  } catch (const std::exception& error) {
    *result = descriptionOf(error);
  }
}

}  // namespace

class MainTaskTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void taskStartsFromTheEventLoop() {
    int calls = 0;
    QObject context;
    startTask(&context, [&calls] { return note(&calls); });
    QCOMPARE(calls, 0);
    QTRY_COMPARE(calls, 1);
  }

  void taskWithoutContextDoesNotStart() {
    int calls = 0;
    {
      QObject context;
      startTask(&context, [&calls] { return note(&calls); });
    }
    QCoreApplication::processEvents();
    QCOMPARE(calls, 0);
  }

  void unhandledExceptionIsLogged() {
    QTest::ignoreMessage(QtWarningMsg, "A task ended with an unexpected error: it went wrong");
    QObject context;
    startTask(&context, [] { return failing(); });
    QCoreApplication::processEvents();
  }

  void onlyTheFirstResultCounts() {
    const OneShot<int> question;
    int result = 0;
    QCoro::Task<> task = keepAnswer(question, &result);
    QVERIFY(!question.isAnswered());
    QVERIFY(question.complete(1));
    QVERIFY(!question.complete(2));
    QVERIFY(!question.fail(std::make_exception_ptr(Failure("late"))));
    QVERIFY(question.isAnswered());
    // The coroutine resumes from the event loop, not inside `complete`.
    QCOMPARE(result, 0);
    QTRY_COMPARE(result, 1);
  }

  void earlierResultIsReturnedAtOnce() {
    const OneShot<int> question;
    question.complete(7);
    QCoreApplication::processEvents();
    int result = 0;
    QCoro::Task<> task = keepAnswer(question, &result);
    QCOMPARE(result, 7);
  }

  void failureIsThrownToTheCoroutine() {
    const OneShot<int> question;
    QString result;
    QCoro::Task<> task = keepFailure(question, &result);
    QVERIFY(question.fail(std::make_exception_ptr(Failure("no answer"))));
    QTRY_COMPARE(result, QString("no answer"));
  }

  void resultFromAnotherThreadResumesOnTheMainThread() {
    const OneShot<int> question;
    int result = 0;
    QCoro::Task<> task = keepAnswer(question, &result);
    std::jthread worker([question] { question.complete(3); });
    QTRY_COMPARE(result, 3);
  }

  void scheduledCallRunsOnceUnlessDestroyed() {
    SystemClock clock;
    int made = 0;
    int takenBack = 0;
    const auto call = clock.callAfter(std::chrono::milliseconds(1), [&made] { ++made; });
    auto other = clock.callAfter(std::chrono::milliseconds(1), [&takenBack] { ++takenBack; });
    other.reset();
    QTRY_COMPARE(made, 1);
    QCoreApplication::processEvents();
    QCOMPARE(made, 1);
    QCOMPARE(takenBack, 0);
  }

  void scheduledCallMayDestroyItself() {
    SystemClock clock;
    int made = 0;
    std::unique_ptr<ScheduledCall> call;
    call = clock.callAfter(std::chrono::milliseconds(0), [&] {
      call.reset();
      ++made;
    });
    QTRY_COMPARE(made, 1);
  }

  void monotonicClockNeverGoesBack() {
    const SystemClock clock;
    const double before = clock.monotonicSeconds();
    QVERIFY(clock.monotonicSeconds() >= before);
    QVERIFY(std::chrono::abs(clock.now() - std::chrono::system_clock::now()) <
            std::chrono::seconds(1));
  }
};

QTEST_GUILESS_MAIN(MainTaskTest)
#include "main_task_test.moc"
