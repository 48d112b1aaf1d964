// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/recognizer_order.h"

#include "platform/speech/recognizer_preferences.h"
#include "support/memory_preferences.h"
#include "support/suite.h"

#include <QSignalSpy>
#include <thread>

using namespace velun;

namespace {

constexpr std::int64_t kGigabyte = 1'000'000'000;

RecognizerCandidate candidate(const QString& id, std::int64_t bytes, bool isSuitable = true) {
  RecognizerCandidate made;
  made.id = id;
  made.modelBytes = bytes;
  made.isSuitable = isSuitable;
  return made;
}

}  // namespace

class RecognizerOrderTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void suitabilityFollowsFromCoresMemoryAndSpeed_data() {
    QTest::addColumn<int>("cores");
    QTest::addColumn<qint64>("memory");
    QTest::addColumn<qint64>("modelBytes");
    QTest::addColumn<qint64>("modelMemory");
    QTest::addColumn<double>("factor");
    QTest::addColumn<bool>("isSuitable");
    const qint64 big = 650'000'000;
    const qint64 small = 134'000'000;
    QTest::newRow("built in") << 1 << qint64(2 * kGigabyte) << qint64(0) << qint64(0) << -1.0
                              << true;
    QTest::newRow("small on an old laptop")
        << 2 << qint64(4 * kGigabyte) << small << qint64(400'000'000) << -1.0 << true;
    QTest::newRow("small on one core")
        << 1 << qint64(4 * kGigabyte) << small << qint64(400'000'000) << -1.0 << true;
    QTest::newRow("big on two cores")
        << 2 << qint64(16 * kGigabyte) << big << qint64(1'200'000'000) << -1.0 << false;
    QTest::newRow("big on two fast cores")
        << 2 << qint64(16 * kGigabyte) << big << qint64(1'200'000'000) << 0.5 << true;
    QTest::newRow("big on four cores")
        << 4 << qint64(16 * kGigabyte) << big << qint64(1'200'000'000) << -1.0 << true;
    QTest::newRow("big on four slow cores")
        << 4 << qint64(16 * kGigabyte) << big << qint64(1'200'000'000) << 0.9 << false;
    QTest::newRow("big in little memory")
        << 8 << qint64(2 * kGigabyte) << big << qint64(1'200'000'000) << 0.2 << false;
    QTest::newRow("unknown memory")
        << 8 << qint64(0) << big << qint64(1'200'000'000) << -1.0 << true;
    QTest::newRow("small but too slow")
        << 2 << qint64(4 * kGigabyte) << small << qint64(400'000'000) << 1.3 << false;
  }
  void suitabilityFollowsFromCoresMemoryAndSpeed() {
    QFETCH(int, cores);
    QFETCH(qint64, memory);
    QFETCH(qint64, modelBytes);
    QFETCH(qint64, modelMemory);
    QFETCH(double, factor);
    QFETCH(bool, isSuitable);
    RecognizerCandidate model = candidate("model", modelBytes);
    model.memoryBytes = modelMemory;
    const std::optional<double> measured = factor < 0 ? std::nullopt : std::optional(factor);
    QCOMPARE(velun::isSuitable(model, {.cores = cores, .memoryBytes = memory}, measured),
             isSuitable);
  }

  void speedMeasuredOnAnotherThreadIsKeptForLaterRuns() {
    test::MemoryPreferences stored;
    const auto preferences = std::make_shared<RecognizerPreferences>(&stored);
    const auto keep = speedKeeper(preferences);
    std::jthread([keep] { keep("model", 1.2); }).join();
    // Not on the measuring thread.
    QVERIFY(!preferences->realTimeFactor("model"));
    QTRY_COMPARE(preferences->realTimeFactor("model"), std::optional(1.2));
    QCOMPARE(RecognizerPreferences(&stored).realTimeFactor("model"), std::optional(1.2));
  }

  void choiceComesFirstAndUnsuitableOnesComeLast() {
    std::vector<RecognizerCandidate> all = {candidate("huge", 900, false), candidate("best", 100),
                                            candidate("big", 600, false), candidate("second", 50),
                                            candidate("chosen", 700, false)};
    all.back().isChosen = true;
    sortByUse(all);
    QStringList ids;
    for (const RecognizerCandidate& each : all) ids << each.id;
    QCOMPARE(ids, QStringList({"chosen", "best", "second", "big", "huge"}));
  }

  void presentMachineIsKnown() {
    const Machine machine = Machine::present();
    QVERIFY(machine.cores >= 1);
    QVERIFY(machine.memoryBytes > 100'000'000);
  }

  void choicesAndSpeedsAreKept() {
    test::MemoryPreferences store;
    RecognizerPreferences first(&store);
    QSignalSpy changes(&first, &RecognizerPreferences::choiceChanged);
    QCOMPARE(first.choice("en_US"), QString());
    first.setChoice("en_US", "built-in");
    QCOMPARE(changes.size(), 1);
    QCOMPARE(changes[0][0].toString(), QString("en_US"));
    QVERIFY(!first.realTimeFactor("small"));
    first.addRealTimeFactor("small", 0.2);
    first.addRealTimeFactor("small", 0.4);

    const RecognizerPreferences second(&store);
    QCOMPARE(second.choice("en_US"), QString("built-in"));
    QCOMPARE(second.choice("ko_KR"), QString());
    QCOMPARE(second.realTimeFactor("small").value(), 0.2);
    QVERIFY(!second.realTimeFactor("big"));
  }

  void speedIsThatOfTheFasterOneOfTheLastTwoRuns() {
    test::MemoryPreferences store;
    store.set("recognizerSpeed.small", 0.1);
    for (const auto& [measured, expected] :
         {std::pair(1.4, 0.1), std::pair(0.9, 0.9), std::pair(1.2, 0.9), std::pair(0.2, 0.2)}) {
      RecognizerPreferences(&store).addRealTimeFactor("small", measured);
      QCOMPARE(RecognizerPreferences(&store).realTimeFactor("small").value(), expected);
    }
  }

  void choicesAndSpeedsLastForARunWithoutAStore() {
    RecognizerPreferences preferences;
    preferences.setChoice("en_US", "small");
    preferences.addRealTimeFactor("small", 0.5);
    QCOMPARE(preferences.choice("en_US"), QString("small"));
    QCOMPARE(preferences.realTimeFactor("small").value(), 0.5);
  }

  void impossibleSpeedsAreIgnored() {
    test::MemoryPreferences store;
    RecognizerPreferences preferences(&store);
    store.set("recognizerSpeed.small", -1.0);
    QVERIFY(!preferences.realTimeFactor("small"));
    store.set("recognizerSpeed.small", QString("fast"));
    QVERIFY(!preferences.realTimeFactor("small"));
  }
};

QTEST_GUILESS_MAIN(RecognizerOrderTest)
#include "recognizer_order_test.moc"
