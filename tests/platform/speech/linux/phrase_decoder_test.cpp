// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/linux/built_in/phrase_decoder.h"

#include "support/suite.h"

#include <cstring>
#include <QFile>

using namespace velun;

namespace {

/// "He was not an ill disposed young man", 3 s.
std::vector<std::int16_t> readAloud() {
  QFile file(
      "/usr/share/pocketsphinx/test/data/librivox/sense_and_sensibility_01_austen_64kb-0880.wav");
  if (!file.open(QIODevice::ReadOnly)) qFatal("the clip is missing");
  const QByteArray bytes = file.readAll().mid(44);
  std::vector<std::int16_t> phrase(static_cast<std::size_t>(bytes.size()) / sizeof(std::int16_t));
  std::memcpy(phrase.data(), bytes.constData(), phrase.size() * sizeof(std::int16_t));
  return phrase;
}

bool always() {
  return true;
}

}  // namespace

class PhraseDecoderTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void aPhraseIsHeardAsAWhole() {
    const QString words = decoder_.decode(readAloud(), always).value().join(u' ');
    QVERIFY2(words.startsWith("he was not") && words.endsWith("young man"), qPrintable(words));
  }

  void aPhraseThatIsNotWantedAnyMoreIsGivenUp() {
    const std::vector<std::int16_t> phrase = readAloud();
    int asked = 0;
    const auto twice = [&asked] {
      return ++asked < 3;
    };
    QVERIFY(!decoder_.decode(phrase, twice));
    QCOMPARE(asked, 3);
    QVERIFY(decoder_.decode(phrase, always)->endsWith("man"));
  }

  void theSameAgainGivesTheSame() {
    const std::vector<std::int16_t> phrase = readAloud();
    const std::optional<QStringList> words = decoder_.decode(phrase, always);
    const std::vector<std::int16_t> half(
        phrase.begin(), phrase.begin() + static_cast<std::ptrdiff_t>(phrase.size() / 2));
    QVERIFY(decoder_.decode(half, always) != words);
    QCOMPARE(decoder_.decode(phrase, always), words);
  }

  void nothingIsNothing() {
    QCOMPARE(decoder_.decode({}, always), QStringList());
    QCOMPARE(decoder_.decode(std::vector<std::int16_t>(100), always), QStringList());
  }

 private:
  PhraseDecoder decoder_;
};

QTEST_GUILESS_MAIN(PhraseDecoderTest)
#include "phrase_decoder_test.moc"
