// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/hotwords.h"

#include "support/suite.h"

using namespace velun;

namespace {

const QByteArray kUpperCasePieces = "<blk> 0\n<sos/eos> 1\n<unk> 2\n▁ 3\n▁HUE 4\nB 5\nNER 6\nA 7\n";

}  // namespace

class HotwordsTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void wordsGetTheCaseOfTheModel() {
    const Hotwords hotwords = makeHotwords("Huebner\nAba", kUpperCasePieces);
    QCOMPARE(hotwords.text, QByteArray("HUEBNER\nABA\n"));
    QCOMPARE(hotwords.unit, QByteArray("bpe"));
    QCOMPARE(hotwords.vocabulary, QByteArray("▁\t0\n▁HUE\t-1\nB\t-2\nNER\t-3\nA\t-4\n"));
    QCOMPARE(makeHotwords("NASA", "<blk> 0\nn 1\na 2\ns 3\n").text, QByteArray("nasa\n"));
    QCOMPARE(makeHotwords("NaSA", "<blk> 0\nN 1\na 2\nS 3\nA 4\n").text, QByteArray("NaSA\n"));
  }

  void wordsThatTheModelCannotWriteAreLeftOut() {
    QCOMPARE(makeHotwords("Dijkstra\nHuebner Dijkstra\nHuebner", kUpperCasePieces).text,
             QByteArray("HUEBNER\n"));
    QCOMPARE(makeHotwords("Dijkstra", kUpperCasePieces), Hotwords());
    QCOMPARE(makeHotwords("", kUpperCasePieces), Hotwords());
    QCOMPARE(makeHotwords("Huebner", ""), Hotwords());
  }

  void modelsOfSingleLettersNeedNoVocabulary() {
    const Hotwords hotwords = makeHotwords("독도\n서울", "<blk> 0\n독 1\n도 2\n울 3\n");
    QCOMPARE(hotwords.text, QByteArray("독도\n"));
    QCOMPARE(hotwords.unit, QByteArray("cjkchar"));
    QVERIFY(hotwords.vocabulary.isEmpty());
  }

  void settingsOfTheLibraryAreNotWritten() {
    QCOMPARE(makeHotwords("A :2.5\n@A\nA #1", "<blk> 0\nA 1\n: 2\n# 3\n@ 4\n2 5\n. 6\n5 7\n1 8\n"),
             Hotwords());
  }
};

QTEST_GUILESS_MAIN(HotwordsTest)
#include "hotwords_test.moc"
