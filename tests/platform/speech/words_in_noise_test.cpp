// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/words_in_noise.h"

#include "support/suite.h"

#include <QStringList>

using namespace velun;

namespace {

/// The words one after another, each as long as given.
std::vector<RecognizedWord> words(const QString& text, double seconds) {
  std::vector<RecognizedWord> all;
  double at = 0.4;
  for (const QString& word : text.split(u' ', Qt::SkipEmptyParts)) {
    all.push_back({word, at, at + seconds, 0.9});
    at += seconds;
  }
  return all;
}

}  // namespace

class WordsInNoiseTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void speechIsKept_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("wordSeconds");
    QTest::addColumn<double>("voicedSeconds");
    QTest::newRow("one word") << "yes" << 0.3 << 0.4;
    QTest::newRow("short word with a long breath") << "yeah" << 0.15 << 0.7;
    QTest::newRow("repeated word") << "no no no no no" << 0.25 << 1.5;
    QTest::newRow("vocal sound and words") << "oh my god" << 0.2 << 0.7;
    QTest::newRow("slow talk in noise") << "what's the weather" << 0.3 << 4.0;
  }
  void speechIsKept() {
    QFETCH(QString, text);
    QFETCH(double, wordSeconds);
    QFETCH(double, voicedSeconds);
    QVERIFY(!areWordsInNoise(words(text, wordSeconds), voicedSeconds));
  }

  void noiseIsRecognized_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("wordSeconds");
    QTest::addColumn<double>("voicedSeconds");
    QTest::newRow("no words") << "" << 0.0 << 1.0;
    QTest::newRow("vocal sounds") << "oh ooh" << 0.4 << 1.0;
    QTest::newRow("articles") << "a a a a" << 0.3 << 1.5;
    QTest::newRow("very short word") << "yeah" << 0.1 << 0.8;
    QTest::newRow("few words") << "three" << 2.6 << 6.0;
  }
  void noiseIsRecognized() {
    QFETCH(QString, text);
    QFETCH(double, wordSeconds);
    QFETCH(double, voicedSeconds);
    QVERIFY(areWordsInNoise(words(text, wordSeconds), voicedSeconds));
  }
};

QTEST_APPLESS_MAIN(WordsInNoiseTest)
#include "words_in_noise_test.moc"
