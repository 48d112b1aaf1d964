// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/listing/text_signature.h"

#include "support/suite.h"

#include <QRandomGenerator>

using namespace velun;

class TextSignatureTest final : public test::Suite {
  Q_OBJECT

  static bool mayHold(const QString& text, const QString& part) {
    return TextSignature(text).mayHold(TextSignature(part));
  }

 private Q_SLOTS:
  void everyPartOfATextMayBeHeld() {
    const QString text = "the river and the people beside it; 강과 그 옆에 사는 사람들 😀";
    const TextSignature whole(text);
    for (qsizetype at = 0; at < text.size(); ++at) {
      for (qsizetype length = 0; length <= text.size() - at; ++length) {
        QVERIFY(whole.mayHold(TextSignature(text.mid(at, length))));
      }
    }
  }

  void anotherTextIsRuledOut_data() {
    QTest::addColumn<QString>("part");
    QTest::newRow("another letter") << "z";
    QTest::newRow("another pair") << "rr";
    QTest::newRow("another triple") << "ver a";
    QTest::newRow("another script") << "강";
    QTest::newRow("longer") << "the river the";
  }
  void anotherTextIsRuledOut() {
    QFETCH(QString, part);
    QVERIFY(mayHold("the river", "the river"));
    QVERIFY(!mayHold("the river", part));
  }

  void theEmptyTextIsHeldByAll() {
    QVERIFY(mayHold("", ""));
    QVERIFY(mayHold("the river", ""));
    QVERIFY(!mayHold("", "t"));
  }

  void fewTextsAreReadInVain() {
    // A session of 200 lines of the 26 letters, and words of five letters that it does not hold.
    QRandomGenerator random(7);
    const auto word = [&random](int length) {
      QString letters;
      for (int i = 0; i < length; ++i) letters += QChar(ushort('a' + random.bounded(26)));
      return letters;
    };
    QString text;
    for (int i = 0; i < 400; ++i) text += word(6) + ' ';
    const TextSignature signature(text);
    int wrong = 0;
    int count = 0;
    for (int i = 0; i < 1000; ++i) {
      const QString searched = word(5);
      if (text.contains(searched)) continue;
      ++count;
      wrong += signature.mayHold(TextSignature(searched)) ? 1 : 0;
    }
    QVERIFY2(wrong * 20 < count, qPrintable(QString::number(wrong)));
  }
};

QTEST_GUILESS_MAIN(TextSignatureTest)
#include "text_signature_test.moc"
