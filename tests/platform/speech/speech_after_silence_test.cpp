// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/neural_runs.h"
#include "support/suite.h"

Q_DECLARE_METATYPE(velun::RecognizerSettings)

using namespace velun;
using namespace velun::test;

/// The first word after a pause of any length, with the real sherpa-onnx. It was lost when it began
/// while the model was restarted.
class SpeechAfterSilenceTest final : public Suite {
  Q_OBJECT

  const std::vector<float> music_ = sound("h01.wav");
  /// The words; without a pause both phrases are one line.
  static QString plain(const QStringList& finals) {
    return finals.join(u' ').toLower().remove(u'.');
  }
  static QString shown(int tenths) { return QString::number(tenths / 10.0) + " s: "; }

 private Q_SLOTS:
  void initTestCase() {
    QVERIFY2(hasRecognitionLibrary(), "The recognition library is missing: run scripts/setup.");
  }

  void firstWordIsKept_data() {
    QTest::addColumn<RecognizerSettings>("settings");
    QTest::newRow("transducer") << transducer();
    QTest::newRow("transducer with punctuation") << punctuatedTransducer();
    RecognizerSettings withNames = transducer();
    withNames.userWords = "music";
    QTest::newRow("transducer with names") << withNames;
    QTest::newRow("CTC") << zipformerCtc();
    QTest::newRow("NeMo CTC") << nemoCtc();
    QTest::newRow("NeMo transducer") << nemoTransducer();
  }
  void firstWordIsKept() {
    QFETCH(RecognizerSettings, settings);
    NeuralBackend backend(helperProgram(), settings);
    backend.load();
    QStringList wrong;
    // The models are restarted after 2.4 s.
    for (int tenths = 18; tenths < 25; ++tenths) {
      feed(backend, silence(tenths / 10.0) + music_);
      backend.finalize();
      QStringList finals;
      keepFinals(backend, finals);
      if (plain(finals) != "turn off the music now") wrong << shown(tenths) + finals.join(u'|');
    }
    QCOMPARE(wrong.join(u';'), QString());
  }

  void firstWordAfterAPhraseIsKept_data() { firstWordIsKept_data(); }
  void firstWordAfterAPhraseIsKept() {
    QFETCH(RecognizerSettings, settings);
    NeuralBackend backend(helperProgram(), settings);
    backend.load();
    QStringList wrong;
    for (int tenths = 6; tenths < 18; ++tenths) {
      feed(backend, music_ + silence(tenths / 10.0) + music_);
      backend.finalize();
      QStringList finals;
      keepFinals(backend, finals);
      const bool isRight = plain(finals) == "turn off the music now turn off the music now";
      if (!isRight) wrong << shown(tenths) + finals.join(u'|');
    }
    QCOMPARE(wrong.join(u';'), QString());
  }
};

QTEST_GUILESS_MAIN(SpeechAfterSilenceTest)
#include "speech_after_silence_test.moc"
