// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/built_in/sentence_case.h"
#include "platform/speech/built_in/stable_draft.h"
#include "support/suite.h"

using namespace velun;

class DraftTextTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void wordsBecomeASentence_data() {
    QTest::addColumn<QString>("words");
    QTest::addColumn<QString>("sentence");
    QTest::newRow("empty") << ""
                           << "";
    QTest::newRow("first letter") << "hello there"
                                  << "Hello there";
    QTest::newRow("I") << "then i said i'm sure i'll go"
                       << "Then I said I'm sure I'll go";
    QTest::newRow("only as a word") << "it is in india's interest indians say"
                                    << "It is in India's interest indians say";
    QTest::newRow("days, titles, languages") << "on monday mr smith spoke english in may"
                                             << "On Monday Mr smith spoke English in may";
    QTest::newRow("first is I") << "i"
                                << "I";
  }
  void wordsBecomeASentence() {
    QFETCH(QString, words);
    QFETCH(QString, sentence);
    QCOMPARE(sentenceCase(words.split(u' ', Qt::SkipEmptyParts)), sentence);
  }

  void wordIsShownOnceThreeGuessesAgree() {
    StableDraft draft;
    QVERIFY(draft.update({"the"}).isEmpty());
    QVERIFY(draft.update({"the", "can"}).isEmpty());
    QCOMPARE(draft.update({"the", "cat"}), QStringList{"the"});
    QCOMPARE(draft.update({"the", "cat", "sat"}), QStringList{"the"});
    QCOMPARE(draft.update({"the", "cat", "sat"}), QStringList({"the", "cat"}));
  }

  void unstableWordStaysAsShown() {
    StableDraft draft;
    for (int i = 0; i < 3; ++i) draft.update({"good", "morning"});
    QCOMPARE(draft.update({"good", "mourning"}), QStringList({"good", "morning"}));
    QCOMPARE(draft.update({"good", "morning", "all"}), QStringList({"good", "morning"}));
  }

  void changedWordIsReplaced() {
    StableDraft draft;
    for (int i = 0; i < 3; ++i) draft.update({"good", "mourning"});
    draft.update({"good", "morning"});
    draft.update({"good", "morning"});
    QCOMPARE(draft.update({"good", "morning"}), QStringList({"good", "morning"}));
  }

  void newPhraseBeginsEmpty() {
    StableDraft draft;
    for (int i = 0; i < 3; ++i) draft.update({"one"});
    draft.reset();
    QVERIFY(draft.update({"two"}).isEmpty());
  }
};

QTEST_GUILESS_MAIN(DraftTextTest)
#include "draft_text_test.moc"
