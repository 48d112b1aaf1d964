// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/word_run.h"
#include "support/suite.h"

using namespace velun;
using namespace velun::test;
using namespace std::chrono_literals;

namespace {

/// A run with B, while A becomes the best.
struct SwitchingRun : WordRun {
  SwitchingRun() { recognizers = {b.recognizer(), c.recognizer()}; }

  /// B has heard five words, and three of them are in a draft.
  void startWithDraft() {
    start();
    say(1, 5);
    QVERIFY(QTest::qWaitFor([this] { return draft() == "B1 B2 B3"; }, 60'000));
  }
  /// A becomes available.
  void offerA() { run->setRecognizers({a.recognizer(), b.recognizer(), c.recognizer()}); }
  void offerSlowA() {
    a.script->isSlowToLoad = true;
    offerA();
    QVERIFY(QTest::qWaitFor([this] { return a.script->loads == 1; }, 60'000));
  }
  void loadA() { a.script->mayLoad.release(); }
};

const QString kChanged = "Captions now use “A”.";

}  // namespace

/// A run in which a better recognizer takes over.
class RecognizerSwitchTest final : public Suite {
  Q_OBJECT

 private Q_SLOTS:
  void betterRecognizerTakesOverAtTheEndOfThePhrase() {
    SwitchingRun f;
    f.startWithDraft();
    f.offerSlowA();
    f.loadA();
    f.say(6, 7);
    QTRY_COMPARE(f.draft(), QString("B1 B2 B3 B4 B5"));
    QVERIFY(f.briefNotices.isEmpty());
    f.pause();
    f.say(11, 13);
    f.pause();
    test::await(f.run->finish());
    QCOMPARE(f.finals, QStringList({"B1 B2 B3 B4 B5 B6 B7", "A11 A12 A13"}));
    QCOMPARE(f.briefNotices, QStringList(kChanged));
    QCOMPARE(f.b.script->alive.load(), 0);
  }

  void betterRecognizerTakesOverInSilence() {
    SwitchingRun f;
    f.start();
    f.offerA();
    QTRY_COMPARE(f.briefNotices, QStringList(kChanged));
    VERIFY_SOON(f.b.script->alive == 0);
    f.say(1, 2);
    test::await(f.run->finish());
    QCOMPARE(f.finals, QStringList("A1 A2"));
  }

  void wordThatHasBegunIsNotLost() {
    SwitchingRun f;
    f.start();
    f.say(1, 1);
    f.pause();
    QTRY_COMPARE(f.finals, QStringList("B1"));
    // It is not in a draft yet.
    f.say(2, 2);
    f.offerA();
    QTRY_COMPARE(f.briefNotices, QStringList(kChanged));
    f.say(3, 4);
    test::await(f.run->finish());
    QCOMPARE(f.finals, QStringList({"B1", "A2 A3 A4"}));
  }

  void speechWithoutPausesIsHandedOverAfterASentence() {
    SwitchingRun f;
    f.startWithDraft();
    f.offerA();
    VERIFY_SOON(f.a.script->loads == 1);
    f.say(6, 11);
    QTRY_COMPARE(f.finals, QStringList("B1 B2 B3 B4 B5 B6 B7 B8 B9"));
    f.clock.advance(10s);
    f.say(12, 29);
    f.say(31, 45);
    f.pause();
    test::await(f.run->finish());
    QCOMPARE(numbersIn(f.finals), numbers(1, 29) + numbers(31, 45));
    QCOMPARE(f.briefNotices, QStringList(kChanged));
    QVERIFY(f.finals.last().startsWith("A"));
  }

  void presentRecognizerGoesOnWhenTheBetterCannotBeLoaded() {
    SwitchingRun f;
    f.a.script->loading = WordScript::Loading::fails;
    f.start();
    f.offerA();
    QTRY_COMPARE(f.briefNotices,
                 QStringList("“A” couldn’t be loaded. Captions continue with “B”."));
    QCOMPARE(f.failed, QStringList("A"));
    f.offerA();
    f.say(1, 2);
    test::await(f.run->finish());
    QCOMPARE(f.finals, QStringList("B1 B2"));
    QCOMPARE(f.briefNotices.size(), 1);
    QCOMPARE(f.a.script->loads.load(), 1);
  }

  void failedRecognizerIsTriedAgainOnceItsFailureIsForgotten() {
    SwitchingRun f;
    f.a.script->loading = WordScript::Loading::fails;
    f.start();
    f.offerA();
    QTRY_COMPARE(f.briefNotices.size(), 1);
    f.a.script->loading = WordScript::Loading::succeeds;
    f.run->forgetFailure("A");
    f.offerA();
    QTRY_COMPARE(f.briefNotices.value(f.briefNotices.size() - 1), kChanged);
  }

  void loadingRecognizerTakesOverFromADyingOne() {
    SwitchingRun f;
    f.startWithDraft();
    f.offerSlowA();
    f.b.script->fatalWord = 6;
    f.say(6, 8);
    VERIFY_SOON(f.b.script->alive == 0);
    f.say(9, 9);
    f.loadA();
    test::await(f.run->finish());
    QCOMPARE(f.finals, QStringList("A1 A2 A3 A4 A5 A6 A7 A8 A9"));
    QCOMPARE(f.b.script->loads.load(), 1);
  }

  void dyingRecognizerGoesOnWhenTheLoadingOneFails() {
    SwitchingRun f;
    f.a.script->loading = WordScript::Loading::fails;
    f.b.script->deathsLeft = 1;
    f.startWithDraft();
    f.offerSlowA();
    f.b.script->fatalWord = 6;
    f.say(6, 8);
    VERIFY_SOON(f.b.script->alive == 0);
    f.loadA();
    test::await(f.run->finish());
    QCOMPARE(f.finals, QStringList("B1 B2 B3 B4 B5 B6 B7 B8"));
    QCOMPARE(f.notices, QStringList("“A” couldn’t be loaded. Captions continue with “B”."));
  }

  void stopDoesNotWaitForTheLoadingRecognizer_data() {
    QTest::addColumn<bool>("isCancelled");
    QTest::newRow("finished") << false;
    QTest::newRow("cancelled") << true;
  }
  void stopDoesNotWaitForTheLoadingRecognizer() {
    QFETCH(bool, isCancelled);
    SwitchingRun f;
    f.startWithDraft();
    f.offerSlowA();
    test::await(isCancelled ? f.run->cancel() : f.run->finish());
    QCOMPARE(f.ends, QStringList("-"));
    QCOMPARE(f.finals, isCancelled ? QStringList() : QStringList("B1 B2 B3 B4 B5"));
    QVERIFY(f.briefNotices.isEmpty());
    f.run.reset();
    QCOMPARE(f.a.script->alive.load(), 0);
  }

  void anotherChoiceReplacesTheLoadingOne() {
    SwitchingRun f;
    f.start();
    f.offerSlowA();
    f.run->setRecognizers({f.c.recognizer(), f.b.recognizer()});
    QTRY_COMPARE(f.briefNotices, QStringList("Captions now use “C”."));
    VERIFY_SOON(f.a.script->alive == 0 && f.b.script->alive == 0);
  }

  void returningToThePresentOneStopsTheLoading() {
    SwitchingRun f;
    f.start();
    f.offerSlowA();
    f.run->setRecognizers({f.b.recognizer(), f.c.recognizer()});
    VERIFY_SOON(f.a.script->alive == 0);
    f.say(1, 2);
    test::await(f.run->finish());
    QCOMPARE(f.finals, QStringList("B1 B2"));
    QVERIFY(f.briefNotices.isEmpty() && f.failed.isEmpty());
  }

  void successorReplacesAFailedRecognizerAndItsNotice() {
    SwitchingRun f;
    f.b.script->loading = WordScript::Loading::fails;
    f.start();
    QTRY_COMPARE(f.notices, QStringList("“B” couldn’t be loaded. Captions continue with “C”."));
    f.offerA();
    QTRY_COMPARE(f.briefNotices, QStringList(kChanged));
    QTRY_COMPARE(f.notices.value(f.notices.size() - 1), QString());
  }

  void runCanEndAtEveryMomentOfAChange() {
    for (int i = 0; i < 60; ++i) {
      SwitchingRun f;
      f.start();
      f.say(1, 3);
      f.offerA();
      if (i % 2) f.b.script->fatalWord = 2;
      f.say(4, 6);
      if (i % 3 == 0) {
        test::await(f.run->finish());
        QCOMPARE(numbersIn(f.finals), numbers(1, 6));
      }
      if (i % 3 == 1) test::await(f.run->cancel());
      f.run.reset();
      QCOMPARE(f.a.script->alive + f.b.script->alive + f.c.script->alive, 0);
    }
  }
};

QTEST_GUILESS_MAIN(RecognizerSwitchTest)
#include "recognizer_switch_test.moc"
