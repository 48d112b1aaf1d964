// SPDX-License-Identifier: GPL-3.0-or-later
#include "audio/spectrum_bands.h"

#include <algorithm>
#include <cmath>
#include <fftw3.h>
#include <numbers>

namespace velun {

namespace {

constexpr std::size_t kBinCount = SpectrumBands::blockSize / 2;
constexpr double kLowestFrequency = 120;
constexpr double kFrequencyRatio = 50;
constexpr float kFloorPower = 1e-12F;

// The levels are those of a transform that yields twice the mathematical DFT.
constexpr float kPowerScale = 4;

double edgeFrequency(int edge) {
  return kLowestFrequency * std::pow(kFrequencyRatio, double(edge) / SpectrumBands::bandCount);
}

std::size_t binAt(double frequency) {
  return static_cast<std::size_t>(frequency / SpectrumBands::binWidth);
}

}  // namespace

/// The transform with its work areas, aligned for FFTW's vector code.
struct SpectrumBands::Transform {
  Transform()
      : input(fftwf_alloc_real(blockSize)),
        output(fftwf_alloc_complex(kBinCount + 1)),
        plan(fftwf_plan_dft_r2c_1d(int(blockSize), input, output, FFTW_ESTIMATE)) {}
  ~Transform() {
    fftwf_destroy_plan(plan);
    fftwf_free(output);
    fftwf_free(input);
  }
  Transform(const Transform&) = delete;
  Transform& operator=(const Transform&) = delete;

  float* input;
  fftwf_complex* output;
  fftwf_plan plan;
};

SpectrumBands::BinRange SpectrumBands::binsOf(int band) {
  const std::size_t first = std::max<std::size_t>(binAt(edgeFrequency(band)), 1);
  const std::size_t end = std::max(first + 1, std::min(binAt(edgeFrequency(band + 1)), kBinCount));
  return {first, end};
}

SpectrumBands::SpectrumBands() : fft_(std::make_unique<Transform>()) {
  for (std::size_t n = 0; n < blockSize; ++n) {
    const double phase = 2 * std::numbers::pi * double(n) / double(blockSize);
    window_[n] = float(0.5 * (1 - std::cos(phase)));
  }
  for (int band = 0; band < bandCount; ++band) bins_[std::size_t(band)] = binsOf(band);
}

SpectrumBands::~SpectrumBands() = default;

std::span<const float> SpectrumBands::bands() const {
  return hasBands_ ? std::span<const float>(bands_) : std::span<const float>();
}

void SpectrumBands::append(std::span<const float> samples) {
  while (!samples.empty()) {
    const std::size_t taken = std::min(samples.size(), blockSize - sampleCount_);
    std::ranges::copy(samples.first(taken), samples_.begin() + std::ptrdiff_t(sampleCount_));
    samples = samples.subspan(taken);
    sampleCount_ += taken;
    if (sampleCount_ == blockSize) {
      analyseBlock();
      sampleCount_ = 0;
    }
  }
}

void SpectrumBands::analyseBlock() {
  for (std::size_t n = 0; n < blockSize; ++n) fft_->input[n] = samples_[n] * window_[n];
  fftwf_execute(fft_->plan);
  for (std::size_t band = 0; band < bins_.size(); ++band) {
    const BinRange bins = bins_[band];
    float power = 0;
    for (std::size_t bin = bins.first; bin < bins.end; ++bin) {
      const float* value = fft_->output[bin];
      power += value[0] * value[0] + value[1] * value[1];
    }
    const float mean = kPowerScale * power / float(bins.end - bins.first);
    bands_[band] = 10 * std::log10(mean + kFloorPower);
  }
  hasBands_ = true;
}

}  // namespace velun
