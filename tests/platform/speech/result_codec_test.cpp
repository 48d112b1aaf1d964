// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/result_codec.h"

#include "support/suite.h"

using namespace velun;

/// The results that the helper program sends to velun.
class ResultCodecTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void resultsAreSentAsTheyAre() {
    const TranscriptionResult result{
        "It’s “six”\n여섯", true, {{"it's", 0.25, 0.5, 0.75}, {"six", 0.5, 1.125, 1}}};
    QVERIFY(decodedResult(encodedResult(result), true) == result);
    const TranscriptionResult draft{"it's", false, {}};
    QVERIFY(decodedResult(encodedResult(draft), false) == draft);
    const TranscriptionResult cut{"it's", true, {}, true, 2.5};
    QVERIFY(decodedResult(encodedResult(cut), true) == cut);
  }

  void invalidMembersAreLeftOut() {
    QCOMPARE(decodedResult("no JSON", false).text, QString());
    const TranscriptionResult result = decodedResult(
        R"({"text": "a b", "words": [["a", 1, 2], ["b", 1, 2, 7], 5, [1, 2, 3, 4]]})", false);
    QCOMPARE(result.text, QString("a b"));
    QCOMPARE(result.words.size(), 1U);
    QCOMPARE(result.words[0].text, QString("b"));
    QCOMPARE(result.words[0].confidence, 1.0);
  }
};

QTEST_GUILESS_MAIN(ResultCodecTest)
#include "result_codec_test.moc"
