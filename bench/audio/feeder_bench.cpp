// SPDX-License-Identifier: GPL-3.0-or-later
// What it costs to bring captured audio to the analyzer, spectrum included, beside what must be
// done anyhow: the downmix and the resampler.
#include "audio/audio_feeder.h"
#include "platform/foundation/system_clock.h"

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <random>
#include <soxr.h>
#include <vector>

using namespace velun;

namespace {

constexpr std::size_t bufferFrames = 1024;
constexpr std::size_t bufferCount = 2812;  // 60 s
constexpr double audioSeconds = double(bufferFrames * bufferCount) / 48'000;
constexpr int rounds = 9;

const AudioFormat captured{AudioFormat::Sample::float32, 48'000, 2, true};
const AudioFormat analyzed{AudioFormat::Sample::float32, 16'000, 1, true};

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

const float* bufferOf(const std::vector<float>& noise, std::size_t number) {
  return noise.data() + (number % 16) * bufferFrames * 2;
}

double feedSeconds(const std::vector<float>& noise) {
  const SystemClock clock;
  const auto stream = std::make_shared<AnalyzerInputStream>();
  AudioFeeder feeder(analyzed, stream, clock);
  const double start = threadSeconds();
  for (std::size_t i = 0; i < bufferCount; ++i) {
    feeder.feed(
        PcmBuffer::view(captured, std::as_bytes(std::span(bufferOf(noise, i), bufferFrames * 2))));
    stream->tryNext();
  }
  return threadSeconds() - start;
}

double soxrSeconds(const std::vector<float>& noise) {
  const soxr_quality_spec_t quality = soxr_quality_spec(SOXR_HQ, 0);
  soxr_t soxr = soxr_create(48'000, 16'000, 1, nullptr, nullptr, &quality, nullptr);
  std::vector<float> mono(bufferFrames);
  std::vector<float> output(bufferFrames);
  const double start = threadSeconds();
  for (std::size_t i = 0; i < bufferCount; ++i) {
    const float* samples = bufferOf(noise, i);
    for (std::size_t n = 0; n < bufferFrames; ++n) {
      mono[n] = 0.5F * (samples[2 * n] + samples[2 * n + 1]);
    }
    std::size_t made = 0;
    soxr_process(soxr, mono.data(), bufferFrames, nullptr, output.data(), output.size(), &made);
  }
  const double seconds = threadSeconds() - start;
  soxr_delete(soxr);
  return seconds;
}

}  // namespace

int main() {
  const std::vector<float> noise = makeNoise();
  std::vector<double> feeds;
  std::vector<double> ratios;
  // In turn, so that both meet the same machine.
  for (int i = 0; i < rounds; ++i) {
    feeds.push_back(feedSeconds(noise));
    ratios.push_back(feeds.back() / soxrSeconds(noise));
  }
  std::ranges::sort(feeds);
  std::ranges::sort(ratios);
  std::printf("feeder_realtime_factor %.1f x\n", audioSeconds / feeds[rounds / 2]);
  std::printf("feeder_over_soxr %.3f x\n", ratios[rounds / 2]);
}
