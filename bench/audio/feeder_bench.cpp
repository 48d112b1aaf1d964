// SPDX-License-Identifier: GPL-3.0-or-later
// The cost of passing captured audio to the recognizer, with the mixing of stereo to mono and the
// spectrum.
#include "audio/audio_feeder.h"
#include "platform/audio/mono_mixer.h"
#include "platform/foundation/system_clock.h"

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <random>
#include <vector>

using namespace velun;

namespace {

constexpr std::size_t bufferFrames = 341;  // as PipeWire resamples 1,024 frames at 48 kHz
constexpr std::size_t bufferCount = 2816;  // 60 s
constexpr double audioSeconds = double(bufferFrames * bufferCount) / 16'000;
constexpr int rounds = 9;

double threadSeconds() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return double(time.tv_sec) + double(time.tv_nsec) * 1e-9;
}

std::vector<float> makeNoise() {
  std::mt19937 random(5);
  std::uniform_real_distribution<float> distribution(-0.5F, 0.5F);
  std::vector<float> samples(bufferFrames * 2 * 16);
  for (float& sample : samples) sample = distribution(random);
  return samples;
}

double feedSeconds(const std::vector<float>& noise) {
  const SystemClock clock;
  const auto stream = std::make_shared<SpeechInput>();
  AudioFeeder feeder(stream, clock);
  MonoMixer mixer(2);
  const double start = threadSeconds();
  for (std::size_t i = 0; i < bufferCount; ++i) {
    feeder.feed(mixer.mix({noise.data() + (i % 16) * bufferFrames * 2, bufferFrames * 2}));
    stream->tryNext();
  }
  return threadSeconds() - start;
}

}  // namespace

int main() {
  const std::vector<float> noise = makeNoise();
  std::vector<double> seconds;
  for (int i = 0; i < rounds; ++i) seconds.push_back(feedSeconds(noise));
  std::ranges::sort(seconds);
  std::printf("feeder_realtime_factor %.1f x\n", audioSeconds / seconds[rounds / 2]);
}
