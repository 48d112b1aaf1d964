// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/audio/mono_mixer.h"

#include "support/suite.h"

#include <cmath>
#include <limits>
#include <vector>

using namespace velun;

namespace {

/// Two frames of `channelCount` channels; only the given channels carry sound.
std::vector<float> frames(std::size_t channelCount, const std::vector<std::size_t>& live,
                          float value = 0.5F) {
  std::vector<float> samples(2 * channelCount);
  for (const std::size_t channel : live) {
    samples[channel] = value;
    samples[channelCount + channel] = -value;
  }
  return samples;
}

std::vector<float> mixed(MonoMixer& mixer, const std::vector<float>& samples) {
  const std::span<const float> mono = mixer.mix(samples);
  return {mono.begin(), mono.end()};
}

/// One second in buffers of 10 ms, in which only the given channels carry sound. Returns the last
/// sample.
float mixSecond(MonoMixer& mixer, const std::vector<std::size_t>& live) {
  std::vector<float> buffer;
  for (int frame = 0; frame < 160; frame += 2) {
    const std::vector<float> two = frames(2, live, -0.5F);
    buffer.insert(buffer.end(), two.begin(), two.end());
  }
  float last = 0;
  for (int i = 0; i < 100; ++i) last = mixer.mix(buffer).back();
  return last;
}

}  // namespace

class MonoMixerTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void liveChannelsKeepTheirLevel_data() {
    QTest::addColumn<int>("channelCount");
    QTest::addColumn<std::vector<std::size_t>>("live");
    using Channels = std::vector<std::size_t>;
    QTest::newRow("mono") << 1 << Channels{0};
    QTest::newRow("stereo") << 2 << Channels{0, 1};
    QTest::newRow("left only") << 2 << Channels{0};
    QTest::newRow("right only") << 2 << Channels{1};
    QTest::newRow("centre of 5.1") << 6 << Channels{2};
    QTest::newRow("sixth of eight inputs") << 8 << Channels{5};
  }
  void liveChannelsKeepTheirLevel() {
    QFETCH(int, channelCount);
    QFETCH(std::vector<std::size_t>, live);
    MonoMixer mixer{std::size_t(channelCount)};
    QCOMPARE(mixed(mixer, frames(std::size_t(channelCount), live)),
             (std::vector<float>{0.5F, -0.5F}));
  }

  void differentChannelsAreAveraged() {
    MonoMixer mixer(2);
    QCOMPARE(mixed(mixer, {0.5F, 0.25F, -1, 0}), (std::vector<float>{0.375F, -0.5F}));
  }

  void noiseOfAnUnusedInputIsSilence() {
    MonoMixer mixer(2);
    const float mono = mixed(mixer, {0.5F, 0.0001F}).front();
    QVERIFY(std::abs(mono - 0.5F) < 0.001F);
  }

  void channelThatPausesStillCounts() {
    MonoMixer mixer(2);
    mixed(mixer, frames(2, {0, 1}));
    QCOMPARE(mixed(mixer, frames(2, {0})), (std::vector<float>{0.25F, -0.25F}));
  }

  void channelStillCountsInAPauseOfSomeSeconds() {
    MonoMixer mixer(2);
    mixSecond(mixer, {0, 1});
    float last = 0;
    for (int second = 0; second < 8; ++second) last = mixSecond(mixer, {0});
    QCOMPARE(last, 0.25F);
  }

  void clickOnAnUnusedChannelIsForgotten() {
    MonoMixer mixer(2);
    mixSecond(mixer, {0});
    mixed(mixer, frames(2, {1}, 1.0F));
    float last = 0;
    for (int second = 0; second < 12; ++second) last = mixSecond(mixer, {0});
    QCOMPARE(last, 0.5F);
  }

  void channelsKeepTheirBalanceInALongSilence() {
    MonoMixer mixer(2);
    mixSecond(mixer, {0, 1});
    for (int second = 0; second < 300; ++second) mixSecond(mixer, {});
    QCOMPARE(mixSecond(mixer, {0, 1}), 0.5F);
  }

  void silenceStaysSilent() {
    MonoMixer mixer(2);
    QCOMPARE(mixed(mixer, frames(2, {})), (std::vector<float>{0, 0}));
  }

  void invalidSamplesBecomeSilence() {
    MonoMixer mixer(1);
    const float infinity = std::numeric_limits<float>::infinity();
    QCOMPARE(mixed(mixer, {0.5F, NAN, infinity, -infinity, 1e30F, 0.25F}),
             (std::vector<float>{0.5F, 0, 0, 0, 0, 0.25F}));
  }

  void incompleteFrameIsDropped() {
    MonoMixer mixer(2);
    QCOMPARE(mixed(mixer, {0.5F, 0.5F, 0.5F}), std::vector<float>{0.5F});
    QVERIFY(mixed(mixer, {}).empty());
    MonoMixer none(0);
    QVERIFY(mixed(none, {0.5F}).empty());
  }
};

QTEST_GUILESS_MAIN(MonoMixerTest)
#include "mono_mixer_test.moc"
