// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/built_in/sentence_case.h"
#include "platform/speech/helper/stable_draft.h"
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
    QCOMPARE(shown(draft, "the"), QString());
    QCOMPARE(shown(draft, "the can"), QString());
    QCOMPARE(shown(draft, "the cat"), QString("the"));
    QCOMPARE(shown(draft, "the cat sat"), QString("the"));
    QCOMPARE(shown(draft, "the cat sat"), QString("the cat"));
  }

  void unstableWordStaysAsShown() {
    StableDraft draft;
    for (int i = 0; i < 3; ++i) shown(draft, "good morning");
    QCOMPARE(shown(draft, "good mourning"), QString("good morning"));
    QCOMPARE(shown(draft, "good morning all"), QString("good morning"));
  }

  void changedWordIsReplaced() {
    StableDraft draft;
    for (int i = 0; i < 3; ++i) shown(draft, "good mourning");
    shown(draft, "good morning");
    shown(draft, "good morning");
    QCOMPARE(shown(draft, "good morning"), QString("good morning"));
  }

  void newPhraseBeginsEmpty() {
    StableDraft draft;
    for (int i = 0; i < 3; ++i) shown(draft, "one");
    draft.reset();
    QCOMPARE(shown(draft, "two"), QString());
  }

  void timesDoNotMakeWordsDifferent() {
    StableDraft draft;
    draft.update({{"one", 0, 0.4, 0.5}});
    draft.update({{"one", 0, 0.5, 0.6}});
    QCOMPARE(draft.update({{"one", 0.1, 0.5, 0.7}}).size(), 1U);
  }

 private:
  /// The draft after one more guess.
  static QString shown(StableDraft& draft, const QString& guess) {
    StableDraft::Words words;
    for (const QString& word : guess.split(u' ')) words.push_back({word});
    QStringList texts;
    for (const RecognizedWord& word : draft.update(words)) texts.append(word.text);
    return texts.join(u' ');
  }
};

QTEST_GUILESS_MAIN(DraftTextTest)
#include "draft_text_test.moc"
