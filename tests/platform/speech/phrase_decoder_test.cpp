// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/built_in/phrase_decoder.h"

#include "platform/speech/sound_clip.h"
#include "support/suite.h"

using namespace velun;

namespace {

std::vector<std::int16_t> youngMan() {
  return test::clipIntegers(test::readAloud("0880"));
}

bool always() {
  return true;
}

}  // namespace

class PhraseDecoderTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void decodesAWholePhrase() {
    const QString words = decoder_.decode(youngMan(), always).value().join(u' ');
    QVERIFY2(words.startsWith("he was not") && words.endsWith("young man"), qPrintable(words));
  }

  void stopsDecodingACancelledPhrase() {
    const std::vector<std::int16_t> phrase = youngMan();
    int asked = 0;
    const auto twice = [&asked] {
      return ++asked < 3;
    };
    QVERIFY(!decoder_.decode(phrase, twice));
    QCOMPARE(asked, 3);
    QVERIFY(decoder_.decode(phrase, always)->endsWith("man"));
  }

  void decodingIsRepeatable() {
    const std::vector<std::int16_t> phrase = youngMan();
    const std::optional<QStringList> words = decoder_.decode(phrase, always);
    const std::vector<std::int16_t> half(
        phrase.begin(), phrase.begin() + static_cast<std::ptrdiff_t>(phrase.size() / 2));
    QVERIFY(decoder_.decode(half, always) != words);
    QCOMPARE(decoder_.decode(phrase, always), words);
  }

  void emptyPhraseHasNoWords() {
    QCOMPARE(decoder_.decode({}, always), QStringList());
    QCOMPARE(decoder_.decode(std::vector<std::int16_t>(100), always), QStringList());
  }

 private:
  PhraseDecoder decoder_;
};

QTEST_GUILESS_MAIN(PhraseDecoderTest)
#include "phrase_decoder_test.moc"
