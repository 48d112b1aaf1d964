// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/neural/voice_helper.h"

#include "platform/speech/neural_fixture.h"
#include "support/suite.h"

#include <cmath>
#include <csignal>
#include <numbers>
#include <numeric>

using namespace velun;

namespace {

constexpr VoiceLimits kLimits{.same = 0.6, .different = 0.2};

RecognizerSettings speakerModel(const QString& path = test::neuralData("speaker.onnx")) {
  RecognizerSettings settings;
  settings.speakerModel = path;
  return settings;
}

/// Two seconds of a sound with overtones.
std::vector<float> voiceOf(double hertz) {
  std::vector<float> samples(32000);
  for (std::size_t i = 0; i < samples.size(); ++i) {
    const double phase = 2 * std::numbers::pi * hertz * static_cast<double>(i) / 16000;
    samples[i] = static_cast<float>(0.1 * std::sin(phase) + 0.05 * std::sin(2 * phase));
  }
  return samples;
}

double cosine(const VoicePrint& left, const VoicePrint& right) {
  return std::inner_product(left.values.begin(), left.values.end(), right.values.begin(), 0.0);
}

}  // namespace

/// With the real helper program and the real sherpa-onnx.
class VoiceHelperTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    if (!test::hasRecognitionLibrary()) QSKIP("the recognition library is not installed");
  }

  void likeVoicesHaveLikePrints() {
    VoiceHelper voices(test::helperProgram(), speakerModel(), kLimits);
    const auto low = voices.print(voiceOf(150));
    const auto alsoLow = voices.print(voiceOf(152));
    const auto high = voices.print(voiceOf(900));
    QVERIFY(low && alsoLow && high);
    QCOMPARE(low->seconds, 2.0);
    QVERIFY(low->limits == kLimits);
    QVERIFY(std::abs(cosine(*low, *low) - 1) < 1e-4);
    QVERIFY2(cosine(*low, *alsoLow) > 0.95, QByteArray::number(cosine(*low, *alsoLow)));
    QVERIFY2(cosine(*low, *high) < 0.8, QByteArray::number(cosine(*low, *high)));
    QVERIFY(!voices.failure());
  }

  void tooLittleAudioHasNoPrint() {
    VoiceHelper voices(test::helperProgram(), speakerModel(), kLimits);
    QVERIFY(!voices.print(std::vector<float>()));
    QVERIFY(!voices.failure());
    QVERIFY(voices.print(voiceOf(150)));
  }

  void aHelperThatEndedIsStartedAgain() {
    VoiceHelper voices(test::helperProgram(), speakerModel(), kLimits);
    QVERIFY(voices.print(voiceOf(150)));
    for (int i = 0; i < 3; ++i) {
      ::kill(voices.helperProcessId(), SIGKILL);
      QVERIFY(voices.print(voiceOf(150)));
    }
    QVERIFY(!voices.failure());
  }

  void aModelThatCannotBeUsedIsGivenUp_data() {
    QTest::addColumn<QString>("model");
    QTest::newRow("missing") << "missing.onnx";
    QTest::newRow("of another kind") << "punctuation.onnx";
    QTest::newRow("no model") << "tokens.txt";
  }
  void aModelThatCannotBeUsedIsGivenUp() {
    QFETCH(QString, model);
    VoiceHelper voices(test::helperProgram(), speakerModel(test::neuralData(model)), kLimits);
    QVERIFY(!voices.print(voiceOf(150)));
    QVERIFY(voices.failure());
    // Nothing is started any more.
    QVERIFY(!voices.print(voiceOf(150)));
  }

  void aCancelledOneTellsNothing() {
    VoiceHelper voices(test::helperProgram(), speakerModel(), kLimits);
    QVERIFY(voices.print(voiceOf(150)));
    voices.cancel();
    QVERIFY(!voices.print(voiceOf(150)));
    QVERIFY(!voices.failure());
  }
};

QTEST_GUILESS_MAIN(VoiceHelperTest)
#include "voice_helper_test.moc"
