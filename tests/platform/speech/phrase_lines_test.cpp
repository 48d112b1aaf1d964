// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/phrase_lines.h"

#include "support/suite.h"

using namespace velun;

namespace {

/// The texts of the results: finals as they are, drafts with "~" before them.
QStringList texts(const PhraseLines::Results& results) {
  QStringList all;
  for (const TranscriptionResult& each : results) {
    all.append(each.isFinal ? each.text : u'~' + each.text);
  }
  return all;
}

}  // namespace

class PhraseLinesTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void sentenceIsALineAfterTwoMoreWords() {
    PhraseLines lines("en");
    QCOMPARE(texts(lines.update("We met today.")), QStringList("~We met today."));
    QCOMPARE(texts(lines.update("We met today. It")), QStringList("~We met today. It"));
    QCOMPARE(texts(lines.update("We met today. It was")),
             QStringList({"We met today.", "~It was"}));
    QCOMPARE(texts(lines.update("We met today. It was")), QStringList());
    QCOMPARE(texts(lines.update("We met today. It was fun.")), QStringList("~It was fun."));
    QCOMPARE(texts(lines.finish("We met today. It was fun.")), QStringList("It was fun."));
    QCOMPARE(texts(lines.update("And then")), QStringList("~And then"));
  }

  void everySentenceIsALine() {
    PhraseLines lines("en");
    QCOMPARE(texts(lines.update("Yes. No! Why? Because I")),
             QStringList({"Yes.", "No!", "Why?", "~Because I"}));
  }

  void sentencesOfOtherWritings_data() {
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("lines");
    QTest::newRow("Chinese") << "zh"
                             << "我们今天见面了。天气很"
                             << "我们今天见面了。天气很好"
                             << QStringList({"我们今天见面了。", "~天气很好"});
    QTest::newRow("Japanese") << "ja"
                              << "「今日会いました。」天気が"
                              << "「今日会いました。」天気がい"
                              << QStringList({"「今日会いました。」", "~天気がい"});
    QTest::newRow("Korean") << "ko"
                            << "오늘 만났어요. 날씨가"
                            << "오늘 만났어요. 날씨가 좋았어요"
                            << QStringList({"오늘 만났어요.", "~날씨가 좋았어요"});
    QTest::newRow("Hindi") << "hi"
                           << "हम आज मिले। मौसम"
                           << "हम आज मिले। मौसम अच्छा" << QStringList({"हम आज मिले।", "~मौसम अच्छा"});
    QTest::newRow("Arabic") << "ar"
                            << "هل التقينا اليوم؟ كان"
                            << "هل التقينا اليوم؟ كان الطقس"
                            << QStringList({"هل التقينا اليوم؟", "~كان الطقس"});
    QTest::newRow("Armenian") << "hy"
                              << "Այսօր հանդիպեցինք։ Եղանակը"
                              << "Այսօր հանդիպեցինք։ Եղանակը լավն"
                              << QStringList({"Այսօր հանդիպեցինք։", "~Եղանակը լավն"});
    QTest::newRow("Spanish") << "es"
                             << "Nos vimos hoy. ¿Y"
                             << "Nos vimos hoy. ¿Y mañana"
                             << QStringList({"Nos vimos hoy.", "~¿Y mañana"});
  }
  void sentencesOfOtherWritings() {
    QFETCH(QString, language);
    QFETCH(QString, before);
    QFETCH(QString, text);
    PhraseLines lines(language);
    QCOMPARE(texts(lines.update(before)), QStringList(u'~' + before));
    QTEST(texts(lines.update(text)), "lines");
  }

  void noSentenceEndsHere_data() {
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("text");
    QTest::newRow("title") << "en"
                           << "We met Dr. Smith and his friend";
    QTest::newRow("for example") << "en"
                                 << "Some fruit, e.g. apples and pears";
    QTest::newRow("decimal") << "en"
                             << "It took 3.5 seconds and more";
    QTest::newRow("German") << "de"
                            << "Das ist z.B. sehr gut so";
    QTest::newRow("address") << "en"
                             << "Look at example.com for the rest";
    QTest::newRow("comma") << "zh"
                           << "我们今天，在这里见面了";
  }
  void noSentenceEndsHere() {
    QFETCH(QString, language);
    QFETCH(QString, text);
    PhraseLines lines(language);
    QCOMPARE(texts(lines.update(text)), QStringList(u'~' + text));
  }

  void laterChangesOfFinalWordsAreIgnored_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("draft");
    QTest::newRow("a mark") << "We met today it was fun"
                            << "It was fun";
    QTest::newRow("a word") << "We meet today. It was fun"
                            << "It was fun";
    QTest::newRow("one more word") << "Well we met today. It was fun"
                                   << "It was fun";
    QTest::newRow("one word less") << "Met today. It was fun"
                                   << "It was fun";
  }
  void laterChangesOfFinalWordsAreIgnored() {
    QFETCH(QString, text);
    QFETCH(QString, draft);
    PhraseLines lines("en");
    lines.update("We met today. It was");
    QCOMPARE(texts(lines.update(text)), QStringList(u'~' + draft));
    QCOMPARE(texts(lines.finish(text)), QStringList(draft));
  }

  void endlessSentenceIsCutBetweenWords() {
    PhraseLines lines("en");
    QStringList all;
    QString text;
    qsizetype longest = 0;
    for (int i = 0; i < 200; ++i) {
      text += (i > 0 ? QString(" word%1") : QString("word%1")).arg(i);
      for (const QString& each : texts(lines.update(text))) {
        longest = std::max(longest, each.count(u' ') + 1);
        if (!each.startsWith(u'~')) all.append(each);
      }
    }
    all += texts(lines.finish(text));
    QCOMPARE(all.join(u' '), text);
    QVERIFY(all.size() > 5);
    QVERIFY2(longest <= 31, qPrintable(QString::number(longest)));
  }

  void endlessSentenceIsCutAtAComma() {
    PhraseLines lines("en");
    const QString first = QString("so it goes ").repeated(6).trimmed() + ",";
    const QString rest = QString(" and on").repeated(8);
    QCOMPARE(texts(lines.update(first + rest)), QStringList({first, u'~' + rest.trimmed()}));
  }

  void endlessTextWithoutBlanksIsCut() {
    PhraseLines lines("ja");
    const QString text = QString("今日は").repeated(30);
    const QStringList all = texts(lines.update(text));
    QCOMPARE(all.size(), 2);
    QVERIFY(!all[0].startsWith(u'~'));
    QCOMPARE(all[0] + all[1].mid(1), text);
  }

  void discardedPhraseClearsItsDraft() {
    PhraseLines lines("en");
    lines.update("Yes. No no");
    QCOMPARE(texts(lines.finish("Yes.")), QStringList(""));
    QCOMPARE(texts(lines.finish("")), QStringList());
    QVERIFY(lines.isEmpty());
  }
};

QTEST_GUILESS_MAIN(PhraseLinesTest)
#include "phrase_lines_test.moc"
