// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/combined_hearings.h"

#include "support/suite.h"

using namespace velun;

class CombinedHearingsTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void surerWordIsTaken_data() {
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("second");
    QTest::addColumn<QString>("combined");
    QTest::newRow("nothing") << ""
                             << ""
                             << "";
    QTest::newRow("same") << "one.9 two.3"
                          << "one.5 two.2"
                          << "one two";
    QTest::newRow("second is surer") << "won.6 two.9"
                                     << "one.7 two.9"
                                     << "one two";
    QTest::newRow("first is surer") << "one.95 two.9"
                                    << "won.4 two.9"
                                    << "one two";
    QTest::newRow("second counts a little more") << "won.8"
                                                 << "one.75"
                                                 << "one";
    QTest::newRow("sure word in the first only") << "one.9 two.95 three.9"
                                                 << "one.9 three.9"
                                                 << "one two three";
    QTest::newRow("unsure word in the first only") << "one.9 two.6 three.9"
                                                   << "one.9 three.9"
                                                   << "one three";
    QTest::newRow("sure word in the second only") << "two.9"
                                                  << "one.6 two.9"
                                                  << "one two";
    QTest::newRow("unsure word in the second only") << "two.9"
                                                    << "one.4 two.9"
                                                    << "two";
  }
  void surerWordIsTaken() {
    QFETCH(QString, first);
    QFETCH(QString, second);
    QFETCH(QString, combined);
    QStringList texts;
    for (const RecognizedWord& word : combinedHearings(words(first), words(second))) {
      texts.append(word.text);
    }
    QCOMPARE(texts.join(' '), combined);
  }

  void unfinishedSecondHearingIsCompletedByTheFirst() {
    const std::vector<RecognizedWord> first = {
        {"won", 0, 0.5, 0.3}, {"two", 0.5, 1, 0.9}, {"three", 1, 1.5, 0.9}, {"four", 1.5, 2, 0.9}};
    const std::vector<RecognizedWord> second = {
        {"one", 0, 0.45, 0.9}, {"two", 0.45, 1, 0.9}, {"the", 1, 1.2, 0.9}};
    QStringList texts;
    for (const RecognizedWord& word : completedHearing(second, first, 1.3)) {
      texts.append(word.text);
    }
    QCOMPARE(texts.join(' '), QString("one two three four"));
  }

  void timesDoNotOverlap() {
    const std::vector<RecognizedWord> combined = combinedHearings(
        {{"one", 0, 1.2, 0.9}, {"two", 1.2, 2, 0.2}}, {{"won", 0, 1, 0.2}, {"two", 1, 1.9, 0.9}});
    QCOMPARE(combined.size(), 2U);
    QCOMPARE(combined[0].text, QString("one"));
    QCOMPARE(combined[1].start, 1.2);
    QCOMPARE(combined[1].end, 1.9);
  }

 private:
  /// Words with their confidence behind them.
  static std::vector<RecognizedWord> words(const QString& text) {
    std::vector<RecognizedWord> words;
    for (const QString& each : text.split(' ', Qt::SkipEmptyParts)) {
      const qsizetype point = each.indexOf('.');
      const auto place = static_cast<double>(words.size());
      words.push_back({each.left(point), place, place + 1, each.mid(point).toDouble()});
    }
    return words;
  }
};

QTEST_GUILESS_MAIN(CombinedHearingsTest)
#include "combined_hearings_test.moc"
