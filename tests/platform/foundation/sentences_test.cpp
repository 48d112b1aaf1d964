// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/foundation/sentences.h"

#include "support/suite.h"

using namespace velun;

class SentencesTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void splits_data() {
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QStringList>("expected");
    const auto row = [](const char* name, const char* locale, const QStringList& expected) {
      QTest::newRow(name) << locale << expected;
    };
    row("two", "en_US", {"One. ", "Two."});
    row("question and cry", "en_US", {"Really? ", "Yes! ", "Good."});
    row("one without a stop", "en_US", {"no stop at all"});
    row("number", "en_US", {"It costs 3.5 dollars. ", "Cheap."});
    row("lower case goes on", "en_US", {"about 5 p.m. in the evening"});
    row("library's title", "en_US", {"Mr. Smith went home. ", "He slept."});
    row("our titles", "en_US", {"We saw Dr. Brown and Lt. Col. Hall. ", "Then we left."});
    row("saint", "en_US", {"He lives in St. Louis. ", "It is hot."});
    row("initials", "en_US", {"J. R. Smith met John F. Kennedy. ", "They talked."});
    row("a letter that ends", "en_US", {"the answer is B. ", "Next one."});
    row("the word I ends", "en_US", {"So do I. ", "He went."});
    row("a refusal", "en_US", {"No. ", "I do not."});
    row("a number sign", "en_US", {"We are No. 5 in the list. ", "Good."});
    row("for example", "en_US", {"Take a fruit, e.g. Apples. ", "Eat."});
    row("ends with an abbreviation", "en_US", {"I work at Acme Inc. ", "It is big."});
    row("line break after a title", "en_US", {"Dr.\n", "Brown."});
    row("last word is a title", "en_US", {"Call the Dr."});
    row("titles only in English", "fr_FR", {"Gen. ", "Suite."});
    row("Korean", "ko_KR", {"안녕하세요. ", "저는 학생입니다. ", "정말요? ", "네!"});
    row("Korean number", "ko_KR", {"오늘은 3.5도입니다.", "그래요."});
    row("Japanese", "ja_JP", {"私は学生です。", "はい。"});
    row("opening quote", "ja_JP", {"私は学生です。", "「はい。」", "と言った。"});
    row("Chinese", "zh_CN", {"你好。", "再见！"});
    row("unknown language", "", {"One. ", "Two."});
    row("beyond the basic plane", "en_US", {"Fine \U0001F600. ", "Done."});
  }
  void splits() {
    QFETCH(QString, locale);
    QFETCH(QStringList, expected);
    QCOMPARE(sentences(expected.join(QString()), locale), expected);
  }

  void emptyTextHasNoSentences() { QCOMPARE(sentences(QString(), "en_US"), QStringList()); }
};

QTEST_GUILESS_MAIN(SentencesTest)
#include "sentences_test.moc"
