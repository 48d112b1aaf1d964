// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/engine_chain.h"

#include "platform/foundation/one_shot.h"
#include "support/settle.h"
#include "support/suite.h"

#include <optional>
#include <QRegularExpression>
#include <QStringList>
#include <stdexcept>

using namespace velun;
using test::settle;

namespace {

/// A chain whose operations log their start and end and run until they are released.
struct Bench {
  struct Held {
    QStringList log;
    std::vector<OneShot<bool>> gates;
    std::vector<std::stop_token> tokens;
  };

  Bench() {
    chain.emplace();
    QObject::connect(&*chain, &EngineChain::becameIdle,
                     [held = held] { held->log.append("idle"); });
  }

  OneShot<bool> enqueue(const QString& name) {
    return chain->enqueue(
        [held = held, name](std::stop_token stop) { return hold(held, name, stop); });
  }

  static QCoro::Task<> hold(std::shared_ptr<Held> held, QString name, std::stop_token stop) {
    held->log.append(name);
    held->tokens.push_back(stop);
    const OneShot<bool> gate;
    held->gates.push_back(gate);
    co_await gate;
    held->log.append(name + " ended");
  }

  void release() {
    held->gates.back().complete(true);
    settle();
  }

  std::shared_ptr<Held> held = std::make_shared<Held>();
  std::optional<EngineChain> chain;
};

QCoro::Task<> failing() {
  throw std::runtime_error("this never happens");
  co_return;
}

}  // namespace

class EngineChainTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void operationsStartOnTheNextTurnOneAfterAnother() {
    Bench bench;
    const OneShot<bool> first = bench.enqueue("first");
    const OneShot<bool> second = bench.enqueue("second");
    QCOMPARE(bench.held->log, QStringList());
    settle();
    QCOMPARE(bench.held->log, QStringList({"first"}));
    bench.release();
    QCOMPARE(bench.held->log, QStringList({"first", "first ended", "second"}));
    QVERIFY(first.isAnswered() && !second.isAnswered());
    bench.release();
    QCOMPARE(bench.held->log,
             QStringList({"first", "first ended", "second", "second ended", "idle"}));
    QVERIFY(second.isAnswered());
  }

  void canBeUsedAgainWhenIdle() {
    Bench bench;
    bench.enqueue("first");
    settle();
    bench.release();
    bench.enqueue("second");
    settle();
    bench.release();
    QCOMPARE(bench.held->log,
             QStringList({"first", "first ended", "idle", "second", "second ended", "idle"}));
  }

  void operationsQueuedWhenBecomingIdleRun() {
    Bench bench;
    connect(&*bench.chain, &EngineChain::becameIdle, this, [&bench] {
      if (bench.held->gates.size() == 1) bench.enqueue("second");
    });
    bench.enqueue("first");
    settle();
    bench.release();
    QCOMPARE(bench.held->log.last(), QString("second"));
    bench.release();
  }

  void cancelAllReachesQueuedAndRunningOperations() {
    Bench bench;
    bench.enqueue("first");
    bench.enqueue("second");
    settle();
    bench.chain->cancelAll();
    bench.enqueue("third");
    QVERIFY(bench.held->tokens[0].stop_requested());
    bench.release();
    QVERIFY(bench.held->tokens[1].stop_requested());
    bench.release();
    QVERIFY(!bench.held->tokens[2].stop_requested());
    bench.release();
    QCOMPARE(bench.held->log.last(), QString("idle"));
  }

  void anUnexpectedExceptionDoesNotBlockTheQueue() {
    Bench bench;
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("unexpected.*this never happens"));
    const OneShot<bool> ended = bench.chain->enqueue([](std::stop_token) { return failing(); });
    bench.enqueue("next");
    settle();
    QVERIFY(ended.isAnswered());
    QCOMPARE(bench.held->log, QStringList({"next"}));
    bench.release();
    QCOMPARE(bench.held->log.last(), QString("idle"));
  }

  void destructionCompletesAllAndStartsNothing() {
    Bench bench;
    const OneShot<bool> first = bench.enqueue("first");
    const OneShot<bool> second = bench.enqueue("second");
    settle();
    bench.chain.reset();
    QVERIFY(first.isAnswered() && second.isAnswered());
    QVERIFY(bench.held->tokens[0].stop_requested());
    bench.release();
    QCOMPARE(bench.held->log, QStringList({"first", "first ended"}));
  }

  void closeCompletesAllAndStartsNothing() {
    Bench bench;
    const OneShot<bool> first = bench.enqueue("first");
    const OneShot<bool> second = bench.enqueue("second");
    settle();
    bench.chain->close();
    QVERIFY(first.isAnswered() && second.isAnswered());
    bench.release();
    QCOMPARE(bench.held->log, QStringList({"first", "first ended"}));
  }

  void operationsQueuedAfterCloseCompleteWithoutStarting() {
    Bench bench;
    bench.chain->close();
    QVERIFY(bench.enqueue("late").isAnswered());
    settle();
    QCOMPARE(bench.held->log, QStringList());
  }

  void destructionBeforeTheFirstTurnStartsNothing() {
    Bench bench;
    bench.enqueue("first");
    bench.chain.reset();
    settle();
    QCOMPARE(bench.held->log, QStringList());
  }
};

QTEST_GUILESS_MAIN(EngineChainTest)
#include "engine_chain_test.moc"
