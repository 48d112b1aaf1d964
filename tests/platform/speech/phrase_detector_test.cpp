// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/phrase_detector.h"

#include "support/suite.h"

#include <cmath>
#include <numbers>

using namespace velun;
using Event = PhraseDetector::Event;

namespace {

constexpr int kFramesPerSecond = 100;

/// What a phrase finder made of sounds put one after another: each event with its second.
struct Listener {
  /// A voice-like sound: harmonics of 120 Hz that swell and fade four times a second.
  void hum(double seconds, float amplitude = 0.2F) {
    play(seconds, [amplitude](double t) {
      const double swell = 0.55 + 0.45 * std::sin(2 * std::numbers::pi * 4 * t);
      double sum = 0;
      for (int n = 1; n <= 8; ++n) sum += std::sin(2 * std::numbers::pi * 120 * n * t) / n;
      return amplitude * static_cast<float>(swell * sum / 2);
    });
  }
  void tone(double seconds) {
    play(seconds, [](double t) {
      return 0.2F * static_cast<float>(std::sin(2 * std::numbers::pi * 300 * t));
    });
  }
  void hiss(double seconds) {
    play(seconds, [this](double) { return 0.1F * noise(); });
  }
  void silence(double seconds) {
    play(seconds, [this](double) { return 0.0005F * noise(); });
  }

  template <class Sound>
  void play(double seconds, const Sound& sound) {
    const long frames = std::lround(seconds * kFramesPerSecond);
    for (long i = 0; i < frames; ++i) {
      std::vector<float> frame;
      for (std::size_t k = 0; k < VoiceActivity::kFrameLength; ++k) {
        frame.push_back(sound(static_cast<double>(heard++) / 16000));
      }
      const Event event = finder.accept(frame);
      if (event == Event::none) continue;
      events.push_back(event);
      times.push_back(static_cast<double>(heard) / 16000);
      if (event == Event::ended) {
        wasSpeech.push_back(finder.isLikelySpeech());
        mayGoOn.push_back(finder.mayGoOn());
        lengths.push_back(static_cast<double>(finder.takePhrase().size()) / 16000);
        pauses.push_back(finder.closingPause());
      }
    }
  }
  float noise() {
    random = random * 1664525U + 1013904223U;
    return static_cast<float>(random >> 8) / 8388608.0F - 1;
  }

  PhraseDetector finder;
  std::vector<Event> events;
  std::vector<double> times;
  std::vector<double> lengths;
  std::vector<bool> wasSpeech;
  std::vector<bool> mayGoOn;
  std::vector<double> pauses;
  std::size_t heard = 0;
  unsigned random = 7;
};

}  // namespace

class PhraseDetectorTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void phraseEndsAfterItsPause() {
    Listener l;
    l.silence(2);
    l.hum(2);
    l.silence(1);
    QCOMPARE(l.events, std::vector<Event>({Event::began, Event::ended}));
    QVERIFY(std::abs(l.times[1] - 4.6) < 0.15);
    QVERIFY(l.wasSpeech[0]);
    QVERIFY(!l.mayGoOn[0]);
    QCOMPARE(l.pauses, std::vector<double>{0.6});
    // The phrase includes a little audio from before it.
    QVERIFY(l.lengths[0] > 2.8 && l.lengths[0] < 3.2);
  }

  void shortPauseIsPartOfThePhrase() {
    Listener l;
    l.silence(2);
    l.hum(1);
    l.silence(0.45);
    l.hum(1);
    l.silence(1);
    QCOMPARE(l.events, std::vector<Event>({Event::began, Event::ended}));
    QVERIFY(std::abs(l.times[1] - 5.05) < 0.15);
  }

  void clickIsNoPhrase() {
    Listener l;
    l.silence(2);
    l.hum(0.03);
    l.silence(2);
    QVERIFY(l.events.empty());
  }

  void longPhraseEndsAtAShorterPause() {
    Listener l;
    l.silence(2);
    l.hum(9);
    l.silence(0.25);
    QCOMPARE(l.events, std::vector<Event>({Event::began, Event::ended}));
    // A breath does not end a sentence.
    QCOMPARE(l.mayGoOn, std::vector<bool>{true});
    QCOMPARE(l.pauses, std::vector<double>{0.2});
  }

  void speechWithoutPausesIsCutAndNothingIsLost() {
    Listener l;
    l.silence(2);
    l.hum(16);
    l.silence(1);
    QCOMPARE(l.lengths.size(), std::size_t(2));
    QCOMPARE(l.mayGoOn, std::vector<bool>({true, false}));
    QCOMPARE(l.pauses, std::vector<double>({0, 0.6}));
    QVERIFY(l.lengths[0] <= 15.0);
    // Lead-in, sound and closing pause of the two parts together.
    QVERIFY(std::abs(l.lengths[0] + l.lengths[1] - 17.0) < 0.2);
  }

  void toneAndNoiseAreNotLikelySpeech() {
    Listener tones;
    tones.silence(2);
    tones.tone(2);
    tones.silence(1);
    QCOMPARE(tones.wasSpeech, std::vector<bool>{false});
    Listener hisses;
    hisses.silence(2);
    hisses.hiss(2);
    hisses.silence(1);
    QCOMPARE(hisses.wasSpeech, std::vector<bool>{false});
  }

  void continuousNoiseBecomesBackground() {
    Listener l;
    l.silence(2);
    l.hiss(30);
    // It may start a phrase, but the phrase soon ends.
    QVERIFY(l.times.empty() || l.times.back() < 12);
    QVERIFY(!l.finder.isInPhrase());
  }

  void phraseCanBeEndedExplicitly() {
    Listener l;
    QVERIFY(!l.finder.end());
    l.silence(2);
    l.hum(1);
    QVERIFY(l.finder.end());
    QVERIFY(!l.finder.takePhrase().empty());
    QVERIFY(!l.finder.isInPhrase());
  }
};

QTEST_GUILESS_MAIN(PhraseDetectorTest)
#include "phrase_detector_test.moc"
