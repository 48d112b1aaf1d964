// SPDX-License-Identifier: GPL-3.0-or-later
#include "audio/echo_canceller.h"

#include "support/manual_clock.h"
#include "support/signals.h"
#include "support/suite.h"

#include <cmath>
#include <random>

using namespace velun;
using namespace std::chrono_literals;

namespace {

constexpr std::size_t kChunk = 320;
constexpr auto kChunkTime = 20ms;

/// Noise in syllables of 0.2 s with pauses, like speech. Each seed has a voice of its own.
std::vector<float> voice(unsigned seed, double seconds) {
  std::mt19937 generator(seed);
  std::normal_distribution<float> noise(0, 0.1F);
  std::vector<float> samples(static_cast<std::size_t>(seconds * 16'000));
  for (std::size_t i = 0; i < samples.size(); ++i) {
    const double syllable = std::sin(double(i + seed * 977) / 16'000 * std::numbers::pi * 5);
    samples[i] = noise(generator) * float(std::max(0.0, syllable));
  }
  return samples;
}

/// The echo in a room: the sound of `played` reaches the microphone after `delay` samples, and then
/// again from the walls.
std::vector<float> echoOf(const std::vector<float>& played, std::size_t delay) {
  std::mt19937 generator(7);
  std::normal_distribution<float> noise(0, 1);
  std::vector<float> room(1'600);
  for (std::size_t i = 0; i < room.size(); ++i) {
    room[i] = 0.05F * noise(generator) * std::pow(10.0F, -3.0F * float(i) / 3'200.0F);
  }
  room[0] = 0.4F;
  std::vector<float> echo(played.size(), 0.0F);
  for (std::size_t i = delay; i < echo.size(); ++i) {
    for (std::size_t k = 0; k < room.size() && k + delay <= i; ++k) {
      echo[i] += room[k] * played[i - delay - k];
    }
  }
  return echo;
}

double power(std::span<const float> samples) {
  double sum = 0;
  for (const float sample : samples) sum += double(sample) * double(sample);
  return sum / double(samples.size());
}

/// How much of the power of `signal` is missing or too much in `result`, in dB.
double difference(std::span<const float> result, std::span<const float> signal) {
  std::vector<float> rest(result.begin(), result.end());
  for (std::size_t i = 0; i < rest.size(); ++i) rest[i] -= signal[i];
  return 10 * std::log10(power(rest) / power(signal));
}

/// A canceller that hears what the loudspeakers play.
struct Room {
  /// Passes both sounds on in chunks, and returns what the canceller makes of `heard`.
  std::vector<float> run(const std::vector<float>& played, const std::vector<float>& heard) {
    std::vector<float> result;
    for (std::size_t at = 0; at + kChunk <= heard.size(); at += kChunk) {
      clock.advance(kChunkTime);
      const auto playedChunk = std::span(played).subspan(at, kChunk);
      const bool isPlayed = at < sleepBegin || at >= sleepEnd;
      if (isPlayed && playedFirst) canceller.addPlayed(playedChunk);
      const std::span<const float> ready =
          canceller.withoutEcho(std::span(heard).subspan(at, kChunk));
      result.insert(result.end(), ready.begin(), ready.end());
      if (isPlayed && !playedFirst) canceller.addPlayed(playedChunk);
    }
    return result;
  }

  test::ManualClock clock;
  EchoCanceller canceller{clock};
  bool playedFirst = true;
  /// The output is suspended between these samples: none of them comes.
  std::size_t sleepBegin = 0;
  std::size_t sleepEnd = 0;
};

std::vector<float> sum(std::vector<float> one, const std::vector<float>& other) {
  for (std::size_t i = 0; i < one.size(); ++i) one[i] += other[i];
  return one;
}

/// The last `seconds`.
std::span<const float> lastOf(const std::vector<float>& samples, double seconds) {
  return std::span(samples).last(static_cast<std::size_t>(seconds * 16'000));
}

}  // namespace

/// Taking the computer's sound out of the microphone's.
class EchoCancellerTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void soundPassesUnchangedWhileStopped() {
    Room room;
    const std::vector<float> sound = voice(1, 0.1);
    room.canceller.addPlayed(sound);
    QCOMPARE(room.canceller.withoutEcho(sound).data(), sound.data());
    room.canceller.start();
    room.canceller.stop();
    QCOMPARE(room.canceller.withoutEcho(sound).data(), sound.data());
  }

  void echoIsTakenOut_data() {
    QTest::addColumn<int>("delay");
    QTest::addColumn<bool>("playedFirst");
    QTest::newRow("wired loudspeakers") << 480 << true;
    QTest::newRow("slow loudspeakers") << 2'400 << true;
    QTest::newRow("the microphone comes first") << 480 << false;
  }
  void echoIsTakenOut() {
    QFETCH(int, delay);
    QFETCH(bool, playedFirst);
    Room room;
    room.playedFirst = playedFirst;
    room.canceller.start();
    const std::vector<float> played = voice(1, 8);
    const std::vector<float> echo = echoOf(played, std::size_t(delay));
    const std::vector<float> result = room.run(played, echo);
    const double left = 10 * std::log10(power(lastOf(result, 3)) / power(lastOf(echo, 3)));
    QVERIFY2(left < -15, qPrintable(QString::number(left)));
  }

  void ownWordsStayWhileTheComputerSpeaks() {
    Room room;
    room.canceller.start();
    const std::vector<float> played = voice(1, 12);
    std::vector<float> own = voice(2, 12);
    // The filter learns the room while the user is silent.
    std::fill_n(own.begin(), 4 * 16'000, 0.0F);
    const std::vector<float> heard = sum(own, echoOf(played, 480));
    const std::vector<float> result = room.run(played, heard);
    const auto ownAtThatTime = std::span(own).first(result.size()).last(3 * 16'000);
    const double without =
        difference(std::span(heard).first(result.size()).last(3 * 16'000), ownAtThatTime);
    const double with = difference(lastOf(result, 3), ownAtThatTime);
    QVERIFY2(with < without - 8, qPrintable(QStringLiteral("%1, %2").arg(with).arg(without)));
    QVERIFY2(with < -10, qPrintable(QString::number(with)));
  }

  void ownWordsPassWhileTheComputerIsSilent() {
    Room room;
    room.canceller.start();
    const std::vector<float> own = voice(2, 4);
    const std::vector<float> result = room.run(std::vector<float>(own.size(), 0.0F), own);
    QCOMPARE(own.size() - result.size(), std::size_t(16'000 * EchoCanceller::kDelaySeconds));
    QVERIFY(difference(lastOf(result, 2), std::span(own).first(result.size()).last(32'000)) < -15);
  }

  void headphonesChangeNothing() {
    Room room;
    room.canceller.start();
    const std::vector<float> own = voice(2, 8);
    const std::vector<float> result = room.run(voice(1, 8), own);
    const double change =
        difference(lastOf(result, 3), std::span(own).first(result.size()).last(48'000));
    QVERIFY2(change < -10, qPrintable(QString::number(change)));
  }

  void whatWasLearntCountsAfterASuspendedOutput() {
    Room room;
    room.sleepBegin = 8 * 16'000;
    room.sleepEnd = 12 * 16'000;
    room.canceller.start();
    std::vector<float> played = voice(1, 16);
    std::fill(played.begin() + 8 * 16'000, played.begin() + 12 * 16'000, 0.0F);
    const std::vector<float> echo = echoOf(played, 480);
    const std::vector<float> result = room.run(played, echo);
    const double left = 10 * std::log10(power(lastOf(result, 3)) / power(lastOf(echo, 3)));
    QVERIFY2(left < -15, qPrintable(QString::number(left)));
  }

  void aSecondStartForgets() {
    Room room;
    room.canceller.start();
    const std::vector<float> played = voice(1, 4);
    const std::vector<float> first = room.run(played, echoOf(played, 480));
    room.canceller.start();
    QCOMPARE(room.run(played, echoOf(played, 480)), first);
  }
};

QTEST_GUILESS_MAIN(EchoCancellerTest)
#include "echo_canceller_test.moc"
