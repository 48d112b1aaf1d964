// SPDX-License-Identifier: GPL-3.0-or-later
#include "audio/audio_converter.h"

#include "support/signals.h"
#include "support/suite.h"

#include <limits>

using namespace velun;
using test::amplitudeAt;
using test::channelOf;
using test::rmsOf;
using test::toneBuffer;

namespace {

using InputStatus = AudioConverter::InputStatus;
using OutputStatus = AudioConverter::OutputStatus;

constexpr auto float32 = AudioFormat::Sample::float32;
constexpr auto int16 = AudioFormat::Sample::int16;
const AudioFormat speech{float32, 16'000, 1, true};

/// Hands over each of `buffers` once, then says `last`.
AudioConverter::InputBlock inTurn(const std::vector<const PcmBuffer*>& buffers,
                                  InputStatus last = InputStatus::noDataNow) {
  return [buffers, last, next = std::size_t(0)](InputStatus& status) mutable -> const PcmBuffer* {
    status = next < buffers.size() ? InputStatus::haveData : last;
    return next < buffers.size() ? buffers[next++] : nullptr;
  };
}

/// Converts a stream cut into pieces, with a call for each, and gives channel 0.
std::vector<float> convertInPieces(const PcmBuffer& whole, const AudioFormat& to,
                                   std::size_t pieceLength) {
  const auto converter = AudioConverter::make(whole.format(), to);
  std::vector<float> all;
  const auto frameSize =
      std::size_t(whole.format().channelCount) * (whole.format().sample == float32 ? 4U : 2U);
  for (std::size_t at = 0; at < whole.frameLength(); at += pieceLength) {
    const std::size_t length = std::min(pieceLength, whole.frameLength() - at);
    const PcmBuffer piece =
        PcmBuffer::view(whole.format(), {whole.bytes() + at * frameSize, length * frameSize});
    PcmBuffer output(to,
                     std::size_t(double(length) * to.sampleRate / whole.format().sampleRate) + 16);
    if (converter->convert(output, inTurn({&piece})) == OutputStatus::error) return {};
    const std::vector<float> samples = channelOf(output, 0);
    all.insert(all.end(), samples.begin(), samples.end());
  }
  return all;
}

std::span<const float> middle(const std::vector<float>& samples) {
  return std::span(samples).subspan(samples.size() / 4, samples.size() / 2);
}

}  // namespace

class AudioConverterTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void tonesArriveWithTheirFrequencyAndLevel_data() {
    QTest::addColumn<double>("rate");
    QTest::addColumn<int>("channelCount");
    QTest::addColumn<bool>("isFloat");
    QTest::addColumn<bool>("isInterleaved");
    for (const double rate :
         {8'000.0, 16'000.0, 22'050.0, 44'100.0, 48'000.0, 96'000.0, 192'000.0}) {
      for (const int channels : {1, 2, 6}) {
        for (const bool isFloat : {true, false}) {
          for (const bool isInterleaved : {true, false}) {
            QTest::addRow("%g Hz, %d channels, %s, %s", rate, channels,
                          isFloat ? "float" : "16 bits", isInterleaved ? "frames" : "planes")
                << rate << channels << isFloat << isInterleaved;
          }
        }
      }
    }
  }
  void tonesArriveWithTheirFrequencyAndLevel() {
    QFETCH(double, rate);
    QFETCH(int, channelCount);
    QFETCH(bool, isFloat);
    QFETCH(bool, isInterleaved);
    const AudioFormat from{isFloat ? float32 : int16, rate, channelCount, isInterleaved};
    const auto converter = AudioConverter::make(from, speech);
    QVERIFY(converter);
    const PcmBuffer input = toneBuffer(from, 1000, 0.5F, std::size_t(rate / 2));
    PcmBuffer output(speech, 9'000);
    QCOMPARE(converter->convert(output, inTurn({&input}, InputStatus::endOfStream)),
             OutputStatus::haveData);
    QVERIFY(std::abs(double(output.frameLength()) - 8'000) <= 2);
    const std::vector<float> samples = channelOf(output, 0);
    QVERIFY(std::abs(amplitudeAt(middle(samples), 1000, 16'000) - 0.5) < 0.005);
    QVERIFY(std::abs(rmsOf(middle(samples)) - 0.5 / std::numbers::sqrt2) < 0.005);
  }

  void whatIsAboveTheNewRateIsFilteredOut() {
    const AudioFormat from{float32, 48'000, 1, true};
    const std::vector<float> samples =
        convertInPieces(toneBuffer(from, 12'000, 0.5F, 48'000), speech, 1024);
    QVERIFY(rmsOf(middle(samples)) < 1e-4);
  }

  void aStreamInPiecesConvertsLikeTheWhole_data() {
    QTest::addColumn<double>("rate");
    QTest::addColumn<int>("pieceLength");
    for (const double rate : {16'000.0, 44'100.0, 48'000.0}) {
      for (const int length : {1, 7, 341, 1024, 4800}) {
        QTest::addRow("%g Hz in pieces of %d", rate, length) << rate << length;
      }
    }
  }
  void aStreamInPiecesConvertsLikeTheWhole() {
    QFETCH(double, rate);
    QFETCH(int, pieceLength);
    const AudioFormat from{float32, rate, 2, true};
    const PcmBuffer input = toneBuffer(from, 440, 0.5F, 20'000);
    const std::vector<float> whole = convertInPieces(input, speech, 20'000);
    const std::vector<float> pieces = convertInPieces(input, speech, std::size_t(pieceLength));
    QVERIFY(pieces.size() > 5'000);
    const std::size_t common = std::min(whole.size(), pieces.size());
    for (std::size_t i = 0; i < common; ++i) QVERIFY(std::abs(whole[i] - pieces[i]) < 1e-6F);
  }

  void theInputBlockIsAskedAgainUntilItHasNoData() {
    const auto converter = AudioConverter::make(speech, speech);
    const PcmBuffer input = toneBuffer(speech, 440, 0.5F, 100);
    PcmBuffer output(speech, 116);
    int asked = 0;
    const auto status = converter->convert(output, [&](InputStatus& answer) -> const PcmBuffer* {
      answer = asked == 0 ? InputStatus::haveData : InputStatus::noDataNow;
      return asked++ == 0 ? &input : nullptr;
    });
    QCOMPARE(status, OutputStatus::inputRanDry);
    QCOMPARE(asked, 2);
    QCOMPARE(output.frameLength(), std::size_t(100));
  }

  void whatDoesNotFitStaysInside() {
    for (const double rate : {16'000.0, 48'000.0}) {
      const AudioFormat from{float32, rate, 1, true};
      const auto converter = AudioConverter::make(from, speech);
      const PcmBuffer input = toneBuffer(from, 440, 0.5F, std::size_t(rate));
      std::size_t total = 0;
      PcmBuffer output(speech, 1'000);
      QCOMPARE(converter->convert(output, inTurn({&input})), OutputStatus::haveData);
      total += output.frameLength();
      QCOMPARE(total, std::size_t(1'000));
      OutputStatus status = OutputStatus::haveData;
      while (status == OutputStatus::haveData) {
        status = converter->convert(output, inTurn({}));
        total += output.frameLength();
      }
      QCOMPARE(status, OutputStatus::inputRanDry);
      QVERIFY2(total > 15'000 && total <= 16'000, qPrintable(QString::number(total)));
    }
  }

  void aBufferIsTakenEvenWhenTheOutputWasFullBefore() {
    const AudioFormat from{float32, 48'000, 1, true};
    const auto converter = AudioConverter::make(from, speech);
    const PcmBuffer input = toneBuffer(from, 440, 0.5F, 48'000);
    PcmBuffer output(speech, 100);
    converter->convert(output, inTurn({&input}));
    int asked = 0;
    converter->convert(output, [&](InputStatus& status) -> const PcmBuffer* {
      status = InputStatus::haveData;
      ++asked;
      return &input;
    });
    QCOMPARE(asked, 1);
    PcmBuffer rest(speech, 40'000);
    QCOMPARE(converter->convert(rest, inTurn({})), OutputStatus::inputRanDry);
    QVERIFY(rest.frameLength() > 31'000);
  }

  void theEndOfTheStreamBringsOutTheRest() {
    const AudioFormat from{float32, 48'000, 1, true};
    const auto converter = AudioConverter::make(from, speech);
    const PcmBuffer input = toneBuffer(from, 440, 0.5F, 4'800);
    PcmBuffer output(speech, 2'000);
    QCOMPARE(converter->convert(output, inTurn({&input}, InputStatus::endOfStream)),
             OutputStatus::haveData);
    QVERIFY(std::abs(double(output.frameLength()) - 1'600) <= 1);
    QCOMPARE(converter->convert(output, inTurn({}, InputStatus::endOfStream)),
             OutputStatus::endOfStream);
    QCOMPARE(output.frameLength(), std::size_t(0));
  }

  void oneChannelIsTheMeanOfAll() {
    const AudioFormat from{float32, 16'000, 4, true};
    const std::vector<float> samples = {0.1F, 0.3F, -0.2F, 0.6F, 1.0F, 1.0F, -1.0F, -1.0F};
    const PcmBuffer input = PcmBuffer::view(from, std::as_bytes(std::span(samples)));
    PcmBuffer output(speech, 16);
    AudioConverter::make(from, speech)->convert(output, inTurn({&input}));
    QCOMPARE(channelOf(output, 0), std::vector<float>({0.2F, 0.0F}));
  }

  void oneChannelBecomesSeveralEqualOnes() {
    const AudioFormat to{float32, 16'000, 2, false};
    const std::vector<float> samples = {0.1F, 0.3F};
    const PcmBuffer input = PcmBuffer::view(speech, std::as_bytes(std::span(samples)));
    PcmBuffer output(to, 16);
    AudioConverter::make(speech, to)->convert(output, inTurn({&input}));
    QCOMPARE(channelOf(output, 0), samples);
    QCOMPARE(channelOf(output, 1), samples);
  }

  void severalChannelsKeepTheirPlace() {
    const AudioFormat from{float32, 16'000, 2, false};
    const AudioFormat to{float32, 16'000, 3, true};
    const std::vector<float> samples = {0.1F, 0.2F, 0.3F, 0.4F};
    const PcmBuffer input = PcmBuffer::view(from, std::as_bytes(std::span(samples)));
    PcmBuffer output(to, 16);
    AudioConverter::make(from, to)->convert(output, inTurn({&input}));
    QCOMPARE(channelOf(output, 0), std::vector<float>({0.1F, 0.2F}));
    QCOMPARE(channelOf(output, 1), std::vector<float>({0.3F, 0.4F}));
    QCOMPARE(channelOf(output, 2), std::vector<float>({0.0F, 0.0F}));
  }

  void sixteenBitOutputIsRoundedAndLimited() {
    const AudioFormat to{int16, 16'000, 1, true};
    const std::vector<float> samples = {0.0F, 0.5F, -0.5F, 1.0F, -1.0F, 7.0F, -7.0F, 1.4F / 32768};
    const PcmBuffer input = PcmBuffer::view(speech, std::as_bytes(std::span(samples)));
    PcmBuffer output(to, 32);
    AudioConverter::make(speech, to)->convert(output, inTurn({&input}));
    const auto words = output.int16Samples();
    QVERIFY(std::ranges::equal(
        words, std::vector<std::int16_t>{0, 16384, -16384, 32767, -32768, 32767, -32768, 1}));
  }

  void silenceStaysExactlySilent() {
    const AudioFormat from{float32, 44'100, 2, true};
    const AudioFormat to{int16, 16'000, 1, true};
    const PcmBuffer input = toneBuffer(from, 440, 0, 44'100);
    for (const float sample : convertInPieces(input, to, 1024)) QCOMPARE(sample, 0.0F);
  }

  void samplesThatAreNoSoundDoNotPoisonTheFilter() {
    const AudioFormat from{float32, 48'000, 1, true};
    PcmBuffer input = toneBuffer(from, 1000, 0.5F, 48'000);
    auto* samples = reinterpret_cast<float*>(input.mutableBytes());
    samples[100] = std::numeric_limits<float>::quiet_NaN();
    samples[200] = std::numeric_limits<float>::infinity();
    samples[300] = -3e38F;
    const std::vector<float> converted = convertInPieces(input, speech, 1024);
    for (const float sample : converted) QVERIFY(std::abs(sample) < 1);
    QVERIFY(std::abs(amplitudeAt(middle(converted), 1000, 16'000) - 0.5) < 0.005);
  }

  void anotherFormatIsAnError() {
    const AudioFormat from{float32, 48'000, 2, true};
    const AudioFormat other{float32, 44'100, 2, true};
    const auto converter = AudioConverter::make(from, speech);
    const PcmBuffer input(from, 10);
    const PcmBuffer strange(other, 10);
    PcmBuffer output(speech, 100);
    PcmBuffer strangeOutput(from, 100);
    QCOMPARE(converter->convert(output, inTurn({&strange})), OutputStatus::error);
    QCOMPARE(converter->convert(strangeOutput, inTurn({&input})), OutputStatus::error);
    QCOMPARE(converter->convert(output, inTurn({&input})), OutputStatus::inputRanDry);
  }

  void impossibleFormatsHaveNoConverter_data() {
    QTest::addColumn<double>("rate");
    QTest::addColumn<int>("channelCount");
    QTest::newRow("no rate") << 0.0 << 2;
    QTest::newRow("negative rate") << -48'000.0 << 2;
    QTest::newRow("not a number") << std::numeric_limits<double>::quiet_NaN() << 2;
    QTest::newRow("endless rate") << std::numeric_limits<double>::infinity() << 2;
    QTest::newRow("no channels") << 48'000.0 << 0;
    QTest::newRow("negative channels") << 48'000.0 << -1;
    QTest::newRow("absurdly many channels") << 48'000.0 << 100'000;
  }
  void impossibleFormatsHaveNoConverter() {
    QFETCH(double, rate);
    QFETCH(int, channelCount);
    const AudioFormat format{float32, rate, channelCount, true};
    QVERIFY(!AudioConverter::make(format, speech));
    QVERIFY(!AudioConverter::make(speech, format));
  }
};

QTEST_GUILESS_MAIN(AudioConverterTest)
#include "audio_converter_test.moc"
