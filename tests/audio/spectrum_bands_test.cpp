// SPDX-License-Identifier: GPL-3.0-or-later
#include "audio/spectrum_bands.h"

#include "support/suite.h"

#include <cmath>
#include <complex>
#include <numbers>
#include <random>
#include <vector>

using namespace velun;

namespace {

using Samples = std::vector<float>;

Samples noise(std::size_t count, float amplitude) {
  std::mt19937 random(7);
  std::uniform_real_distribution<float> distribution(-amplitude, amplitude);
  Samples samples(count);
  for (float& sample : samples) sample = distribution(random);
  return samples;
}

Samples tone(double frequency, float amplitude, std::size_t count = 512) {
  Samples samples(count);
  for (std::size_t n = 0; n < count; ++n) {
    samples[n] = amplitude * float(std::cos(2 * std::numbers::pi * frequency * double(n) / 16'000));
  }
  return samples;
}

/// The definition in double precision: a Hann window, twice the DFT sum by sum, mean power a band.
std::vector<double> referenceLevels(const Samples& block) {
  std::vector<double> power(256);
  for (std::size_t k = 1; k < power.size(); ++k) {
    std::complex<double> sum = 0;
    for (std::size_t n = 0; n < 512; ++n) {
      const double turn = 2 * std::numbers::pi * double(n) / 512;
      const double window = 0.5 * (1 - std::cos(turn));
      sum += window * double(block[n]) * std::polar(1.0, -turn * double(k));
    }
    power[k] = std::norm(2.0 * sum);
  }
  std::vector<double> levels;
  for (int band = 0; band < 11; ++band) {
    const double low = 120 * std::pow(50, band / 11.0);
    const double high = 120 * std::pow(50, (band + 1) / 11.0);
    const int first = std::max(int(low / 31.25), 1);
    const int end = std::max(first + 1, std::min(int(high / 31.25), 256));
    double sum = 0;
    for (int bin = first; bin < end; ++bin) sum += power[std::size_t(bin)];
    levels.push_back(10 * std::log10(sum / (end - first) + 1e-12));
  }
  return levels;
}

/// Powers within 0.5 %, or within what single precision can tell beside the loudest band.
void compareWithReference(const SpectrumBands& bands, const Samples& block) {
  const std::vector<double> expected = referenceLevels(block);
  QCOMPARE(bands.bands().size(), expected.size());
  const auto power = [](double level) {
    return std::pow(10, level / 10);
  };
  const double loudest = power(std::ranges::max(expected));
  for (std::size_t i = 0; i < expected.size(); ++i) {
    const double level = double(bands.bands()[i]);
    const double difference = std::abs(power(level) - power(expected[i]));
    QVERIFY2(difference <= 0.005 * power(expected[i]) + 1e-12 * loudest,
             qPrintable(QString("band %1: %2 instead of %3").arg(i).arg(level).arg(expected[i])));
  }
}

}  // namespace

class SpectrumBandsTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void bandsDivideBinsOnALogarithmicScale() {
    const std::vector<SpectrumBands::BinRange> expected = {{3, 5},   {5, 7},    {7, 11},   {11, 15},
                                                           {15, 22}, {22, 32},  {32, 46},  {46, 66},
                                                           {66, 94}, {94, 134}, {134, 192}};
    for (int band = 0; band < SpectrumBands::bandCount; ++band) {
      const auto bins = SpectrumBands::binsOf(band);
      QVERIFY2(bins == expected[std::size_t(band)],
               qPrintable(QString("band %1: %2 up to %3").arg(band).arg(bins.first).arg(bins.end)));
    }
  }

  void analysesABlockWithIts512thSample() {
    SpectrumBands bands;
    const Samples samples = noise(512, 0.5F);
    bands.append(std::span(samples).first(511));
    QVERIFY(bands.bands().empty());
    QCOMPARE(bands.pendingSampleCount(), std::size_t(511));
    bands.append(std::span(samples).last(1));
    QCOMPARE(bands.bands().size(), std::size_t(11));
    QCOMPARE(bands.pendingSampleCount(), std::size_t(0));
    compareWithReference(bands, samples);
  }

  void incompleteBlockKeepsTheLevels() {
    SpectrumBands bands;
    bands.append(noise(512, 0.5F));
    const Samples before(bands.bands().begin(), bands.bands().end());
    bands.append(Samples(511, 0.9F));
    QVERIFY(std::ranges::equal(bands.bands(), before));
  }

  void silenceIsAtTheFloor() {
    SpectrumBands bands;
    bands.append(Samples(512));
    QCOMPARE(bands.bands().size(), std::size_t(11));
    for (const float level : bands.bands()) QVERIFY(std::abs(level + 120) < 1e-4F);
  }

  void levelsMatchASlowReference_data() {
    QTest::addColumn<Samples>("samples");
    QTest::newRow("loud noise") << noise(512, 1.0F);
    QTest::newRow("faint noise") << noise(512, 1e-4F);
    QTest::newRow("tone on a bin") << tone(1000, 0.5F);
    QTest::newRow("tone between bins") << tone(437.3, 0.25F);
    QTest::newRow("beyond full scale") << tone(3000, 40.0F);
    Samples impulse(512);
    impulse[200] = 1;
    QTest::newRow("impulse") << impulse;
  }
  void levelsMatchASlowReference() {
    QFETCH(Samples, samples);
    SpectrumBands bands;
    bands.append(samples);
    compareWithReference(bands, samples);
  }

  void fullScaleToneHasTheExpectedPower() {
    SpectrumBands bands;
    bands.append(tone(1250, 1.0F));
    // Twice the DFT of a windowed cosine: 256 in bin 40, 128 in either neighbour; band 6 has 14.
    const double expected = 10 * std::log10((1.5 * 256 * 256) / 14);
    QVERIFY(std::abs(double(bands.bands()[6]) - expected) < 0.01);
  }

  void constantIsOnlyInUnusedBins() {
    SpectrumBands bands;
    bands.append(Samples(512, 1.0F));
    for (const float level : bands.bands()) QVERIFY(level < -70);
  }

  void lastOfSeveralBlocksCounts() {
    Samples samples = noise(512 * 3 + 100, 0.3F);
    SpectrumBands bands;
    bands.append(samples);
    QCOMPARE(bands.pendingSampleCount(), std::size_t(100));
    compareWithReference(bands, {samples.begin() + 1024, samples.begin() + 1536});
  }

  void bufferSizesDoNotChangeTheLevels() {
    const Samples samples = noise(2048, 0.3F);
    SpectrumBands whole;
    whole.append(samples);
    SpectrumBands pieces;
    for (std::size_t at = 0, size = 1; at < samples.size(); at += size, size = size * 2 + 1) {
      pieces.append(std::span(samples).subspan(at, std::min(size, samples.size() - at)));
    }
    QVERIFY(std::ranges::equal(whole.bands(), pieces.bands()));
  }
};

QTEST_GUILESS_MAIN(SpectrumBandsTest)
#include "spectrum_bands_test.moc"
