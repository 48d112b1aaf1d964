// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/word_run.h"
#include "support/suite.h"

using namespace velun;
using namespace velun::test;
using namespace std::chrono_literals;

Q_DECLARE_METATYPE(velun::test::WordScript::Loading)

/// A run whose recognizer cannot be loaded or dies.
class RecognizerFallbackTest final : public Suite {
  Q_OBJECT

  static const QString& died() {
    static const QString text = "“A” stopped repeatedly. Captions continue with “B”.";
    return text;
  }

 private Q_SLOTS:
  void nextRecognizerHearsEverythingAfterAFailureToLoad_data() {
    QTest::addColumn<WordScript::Loading>("loading");
    QTest::newRow("library or damaged file") << WordScript::Loading::fails;
    QTest::newRow("out of memory") << WordScript::Loading::exhaustsMemory;
  }
  void nextRecognizerHearsEverythingAfterAFailureToLoad() {
    QFETCH(WordScript::Loading, loading);
    WordRun f;
    f.a.script->loading = loading;
    f.say(1, 3);
    f.start();
    f.pause();
    test::await(f.run->finish());
    QCOMPARE(f.finals, QStringList("B1 B2 B3"));
    QCOMPARE(f.notices, QStringList("“A” couldn’t be loaded. Captions continue with “B”."));
    QCOMPARE(f.failed, QStringList("A"));
    QCOMPARE(f.ends, QStringList("-"));
  }

  void severalFailuresToLoadAreOneNotice() {
    WordRun f;
    f.a.script->loading = WordScript::Loading::fails;
    f.b.script->loading = WordScript::Loading::fails;
    f.say(1, 3);
    f.start();
    test::await(f.run->finish());
    QCOMPARE(f.finals, QStringList("C1 C2 C3"));
    QCOMPARE(f.notices, QStringList("“A” couldn’t be loaded. Captions continue with “C”."));
    QCOMPARE(f.failed, QStringList({"A", "B"}));
  }

  void runEndsWhenNoneCanBeLoaded() {
    WordRun f;
    for (WordRecognizer* each : {&f.a, &f.b, &f.c}) {
      each->script->loading = WordScript::Loading::fails;
    }
    f.start();
    QTRY_COMPARE(f.ends, QStringList("Cannot load"));
    QVERIFY(f.notices.isEmpty());
  }

  void deathLosesNoWord() {
    WordRun f;
    f.start();
    f.say(1, 2);
    f.pause();
    f.a.script->deathsLeft = 1;
    f.a.script->fatalWord = 7;
    f.say(3, 8);
    test::await(f.run->finish());
    QCOMPARE(f.finals, QStringList({"A1 A2", "A3 A4 A5 A6 A7 A8"}));
    QCOMPARE(f.a.script->loads.load(), 2);
    QVERIFY(f.notices.isEmpty() && f.failed.isEmpty());
    QCOMPARE(f.ends, QStringList("-"));
  }

  void audioThatWaitsForARestartIsNotSkipped() {
    WordRun f;
    f.start();
    f.say(1, 2);
    QTRY_COMPARE(f.a.script->loads.load(), 1);
    f.a.script->isSlowToLoad = true;
    f.a.script->deathsLeft = 1;
    f.a.script->fatalWord = 3;
    f.say(3, 3);
    VERIFY_SOON(f.a.script->loads == 2);
    // Longer than the backlog may be.
    f.say(4, 78);
    f.a.script->mayLoad.release();
    f.pause();
    QTRY_COMPARE(numbersIn(f.finals), numbers(1, 78));
  }

  void recognizerThatDiesTwiceInAPhraseGivesWay() {
    WordRun f;
    f.a.script->fatalWord = 4;
    f.start();
    f.say(1, 5);
    f.pause();
    test::await(f.run->finish());
    QCOMPARE(f.finals, QStringList("B1 B2 B3 B4 B5"));
    QCOMPARE(f.notices, QStringList(died()));
    QCOMPARE(f.a.script->loads.load(), 2);
  }

  void thirdDeathGivesWay() {
    WordRun f;
    f.start();
    f.die(f.a, 1);
    f.die(f.a, 11);
    QCOMPARE(f.notices, QStringList());
    f.a.script->deathsLeft = 1;
    f.a.script->fatalWord = 23;
    f.say(21, 23);
    f.pause();
    QTRY_COMPARE(f.finals.value(f.finals.size() - 1), QString("B21 B22 B23"));
    QCOMPARE(f.notices, QStringList(died()));
    QCOMPARE(f.failed, QStringList("A"));
    QCOMPARE(f.a.script->loads.load(), 3);
  }

  void allowanceOfRestartsRefillsAfterQuietMinutes() {
    WordRun f;
    f.start();
    f.die(f.a, 1);
    f.die(f.a, 11);
    f.clock.advance(5min);
    f.die(f.a, 21);
    f.die(f.a, 31);
    QVERIFY(f.failed.isEmpty());
    QCOMPARE(f.a.script->loads.load(), 5);
    QCOMPARE(numbersIn(f.finals),
             numbers(1, 2) + numbers(11, 12) + numbers(21, 22) + numbers(31, 32));
  }

  void phraseThatKillsTheOnlyRecognizerIsSkipped() {
    WordRun f;
    f.recognizers = {f.a.recognizer()};
    f.start();
    f.say(1, 5);
    QTRY_COMPARE(f.draft(), QString("A1 A2 A3"));
    f.a.script->fatalWord = 6;
    f.say(6, 6);
    VERIFY_SOON(f.a.script->loads == 3);
    f.say(11, 12);
    f.pause();
    test::await(f.run->finish());
    QCOMPARE(f.finals, QStringList({"A1 A2 A3", "A11 A12"}));
    QCOMPARE(f.ends, QStringList("-"));
  }

  void onlyRecognizerThatKeepsDyingEndsTheRun() {
    WordRun f;
    f.recognizers = {f.a.recognizer()};
    f.start();
    f.die(f.a, 1);
    f.die(f.a, 11);
    f.say(21, 24);
    QTRY_COMPARE(f.draft(), QString("A21 A22"));
    f.a.script->deathsLeft = 1;
    f.a.script->fatalWord = 25;
    f.say(25, 25);
    QTRY_COMPARE(f.ends, QStringList("It died"));
    QCOMPARE(f.finals.last(), QString("A21 A22"));
    QCOMPARE(f.a.script->alive.load(), 0);
  }

  void draftThatTheNextRecognizerDoesNotHearIsRemoved() {
    WordRun f;
    f.b.script->isDeaf = true;
    f.a.script->fatalWord = 6;
    f.start();
    f.say(1, 6);
    QTRY_COMPARE(f.failed, QStringList("A"));
    QTRY_COMPARE(f.draft(), QString());
    QVERIFY(f.finals.isEmpty());
  }

  void deathDuringAStopLeavesTheDraft() {
    WordRun f;
    f.start();
    f.say(1, 5);
    QTRY_COMPARE(f.draft(), QString("A1 A2 A3"));
    f.a.script->fatalWord = 6;
    f.input->yield({spoken(6, 6)});
    test::await(f.run->finish());
    QVERIFY(f.finals == QStringList("A1 A2 A3") || f.finals == QStringList("B1 B2 B3 B4 B5 B6"));
    QCOMPARE(f.ends, QStringList("-"));
  }

  void deathAtTheEndOfARecordingLosesNoWord() {
    WordRun f;
    f.input = std::make_shared<SpeechInput>(SpeechInput::Kind::recorded);
    f.a.script->fatalWord = 5;
    f.a.script->deathsLeft = 1;
    f.say(1, 5);
    f.input->finish();
    f.start();
    QTRY_COMPARE(f.ends, QStringList("-"));
    QCOMPARE(f.finals, QStringList("A1 A2 A3 A4 A5"));
  }

  void recordingThatKeepsKillingTheOnlyRecognizerEndsWithAnError() {
    WordRun f;
    f.input = std::make_shared<SpeechInput>(SpeechInput::Kind::recorded);
    f.recognizers = {f.a.recognizer()};
    f.a.script->fatalWord = 5;
    f.say(1, 8);
    f.input->finish();
    f.start();
    QTRY_COMPARE(f.ends, QStringList("It died"));
    QCOMPARE(f.finals, QStringList("A1 A2"));
  }

  void settleThatFailsIsDoneByTheNextRecognizer() {
    WordRun f;
    f.start();
    f.say(1, 3);
    QTRY_COMPARE(f.draft(), QString("A1"));
    f.a.script->fatalWord = 4;
    f.input->yield({spoken(4, 4)});
    test::await(f.run->settle());
    QCOMPARE(numbersIn(f.finals), numbers(1, 4));
  }
};

QTEST_GUILESS_MAIN(RecognizerFallbackTest)
#include "recognizer_fallback_test.moc"
