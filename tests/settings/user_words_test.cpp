// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/user_words.h"

#include "support/suite.h"

using namespace velun;

class UserWordsTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void areKeptOneALine_data() {
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("kept");
    QTest::newRow("as typed") << "Huebner\nNew Delhi"
                              << "Huebner\nNew Delhi";
    QTest::newRow("spaces and empty lines") << "\n  Huebner \n\n New\t Delhi\n"
                                            << "Huebner\nNew Delhi";
    QTest::newRow("repetitions in another case") << "NASA\nnasa\nNasa"
                                                 << "NASA";
    QTest::newRow("lines of other systems") << "A\r\nB\r\n"
                                            << "A\nB";
    QTest::newRow("control characters") << QString(
                                               "A\x01"
                                               "B\nC")
                                        << "A B\nC";
    QTest::newRow("Korean") << "한글 학회\n독도"
                            << "한글 학회\n독도";
    QTest::newRow("nothing") << " \n "
                             << "";
  }
  void areKeptOneALine() {
    QFETCH(QString, typed);
    QFETCH(QString, kept);
    QCOMPARE(normalizedUserWords(typed), kept);
    QCOMPARE(normalizedUserWords(kept), kept);
  }

  void areLimited() {
    QStringList many;
    for (int i = 0; i < 3 * kMaxUserWords; ++i) many << QString("word %1").arg(i);
    QCOMPARE(normalizedUserWords(many.join('\n')), many.mid(0, kMaxUserWords).join('\n'));
    const QString letters(kMaxUserWordLength - 1, 'x');
    QCOMPARE(normalizedUserWords(letters + "yz"), letters + 'y');
    QCOMPARE(normalizedUserWords(letters + QString::fromUtf8("😀")), letters);
  }
};

QTEST_GUILESS_MAIN(UserWordsTest)
#include "user_words_test.moc"
