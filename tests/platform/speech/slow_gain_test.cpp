// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/slow_gain.h"

#include "platform/speech/sound_clip.h"
#include "support/suite.h"

#include <algorithm>
#include <cmath>
#include <random>

using namespace velun;
using namespace velun::test;

namespace {

std::vector<float> speech(float level) {
  std::vector<float> samples = clipSamples(VELUN_TEST_DATA "/h11.wav");
  const float peak = std::abs(*std::max_element(
      samples.begin(), samples.end(), [](float a, float b) { return std::abs(a) < std::abs(b); }));
  for (float& sample : samples) sample *= level / peak;
  return samples;
}

std::vector<float> noise(float level, double seconds) {
  std::mt19937 random(1);
  std::uniform_real_distribution<float> samples(-level, level);
  std::vector<float> result(static_cast<std::size_t>(seconds * 16000));
  std::generate(result.begin(), result.end(), [&] { return samples(random); });
  return result;
}

}  // namespace

class SlowGainTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void normalVoiceStaysAsItIs() {
    SlowGain gain;
    const std::vector<float> samples = speech(0.9F);
    QCOMPARE(gain.amplified(samples), samples);
  }

  void quietVoiceIsRaised() {
    SlowGain gain;
    gain.amplified(speech(0.01F));
    gain.amplified(speech(0.01F));
    QVERIFY2(gain.gain() > 10, qPrintable(QString::number(gain.gain())));
    QVERIFY(gain.gain() <= 30);
  }

  void gainChangesSlowly() {
    SlowGain gain;
    const std::vector<float> samples = speech(0.01F);
    for (std::size_t at = 0; at + 160 <= samples.size(); at += 160) {
      const float before = gain.gain();
      gain.amplified(std::span(samples).subspan(at, 160));
      QVERIFY(gain.gain() / before < 1.05F && before / gain.gain() < 1.05F);
    }
  }

  void noiseIsNotRaised() {
    SlowGain gain;
    gain.amplified(silence(2));
    gain.amplified(noise(0.003F, 10));
    QCOMPARE(gain.gain(), 1.0F);
  }

  void silenceKeepsTheGain() {
    SlowGain gain;
    gain.amplified(speech(0.01F));
    const float before = gain.gain();
    gain.amplified(silence(60));
    QCOMPARE(gain.gain(), before);
  }

  void loudSoundAfterAQuietVoiceIsNotDistorted() {
    SlowGain gain;
    gain.amplified(speech(0.01F));
    for (const float sample : gain.amplified(speech(0.8F))) QVERIFY(std::abs(sample) <= 0.91F);
    QVERIFY(gain.gain() < 1.5F);
  }

  void piecesOfAnySizeGiveTheSame() {
    const std::vector<float> samples = speech(0.02F);
    SlowGain gain;
    const std::vector<float> whole = gain.amplified(samples);
    SlowGain other;
    std::vector<float> pieces;
    for (std::size_t at = 0; at < samples.size(); at += 1600) {
      const auto part =
          std::span(samples).subspan(at, std::min<std::size_t>(1600, samples.size() - at));
      const std::vector<float> louder = other.amplified(part);
      pieces.insert(pieces.end(), louder.begin(), louder.end());
    }
    QCOMPARE(pieces, whole);
  }
};

QTEST_GUILESS_MAIN(SlowGainTest)
#include "slow_gain_test.moc"
