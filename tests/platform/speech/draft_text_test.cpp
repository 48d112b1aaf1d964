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

  void firstTwoWordsAreShownOnceTwoGuessesAgree() {
    StableDraft draft;
    QCOMPARE(shown(draft, "the"), QString());
    QCOMPARE(shown(draft, "the can"), QString("the"));
    QCOMPARE(shown(draft, "the cat"), QString("the"));
    QCOMPARE(shown(draft, "the cat sat on"), QString("the cat"));
    QCOMPARE(shown(draft, "the cat sat on"), QString("the cat"));
  }

  void laterWordIsShownOnceFourGuessesAgree() {
    StableDraft draft;
    for (int i = 0; i < 3; ++i) QCOMPARE(shown(draft, "the cat sat").count("sat"), 0);
    QCOMPARE(shown(draft, "the cat sat on"), QString("the cat sat"));
    QCOMPARE(shown(draft, "the cat sat in"), QString("the cat sat"));
    for (int i = 0; i < 2; ++i) QCOMPARE(shown(draft, "the cat sat in").count("in"), 0);
    QCOMPARE(shown(draft, "the cat sat in"), QString("the cat sat in"));
  }

  void unstableWordStaysAsShown() {
    StableDraft draft;
    for (int i = 0; i < 4; ++i) shown(draft, "a very good morning");
    QCOMPARE(shown(draft, "a very good mourning"), QString("a very good morning"));
    QCOMPARE(shown(draft, "a very good morning all"), QString("a very good morning"));
    QCOMPARE(shown(draft, ""), QString("a very good morning"));
  }

  void changedWordIsReplaced() {
    StableDraft draft;
    for (int i = 0; i < 4; ++i) shown(draft, "a very good mourning");
    for (int i = 0; i < 3; ++i) shown(draft, "a very good morning");
    QCOMPARE(shown(draft, "a very good morning"), QString("a very good morning"));
  }

  void newPhraseBeginsEmpty() {
    StableDraft draft;
    for (int i = 0; i < 2; ++i) QCOMPARE(shown(draft, "one").isEmpty(), i == 0);
    draft.reset();
    QCOMPARE(shown(draft, "two"), QString());
  }

  void timesDoNotMakeWordsDifferent() {
    StableDraft draft;
    draft.update({{"one", 0, 0.4, 0.5}});
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
