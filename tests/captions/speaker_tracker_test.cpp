// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/speaker_tracker.h"

#include "support/suite.h"

#include <cmath>

using namespace velun;

namespace {

constexpr VoiceLimits kLimits{.same = 0.5, .different = 0.3};

/// A voice at an angle, in degrees, to that of the first speaker. The cosine of 60 is 0.5.
VoicePrint voiceAt(double degrees, double seconds = 4) {
  const double radians = degrees * 3.14159265358979 / 180;
  return {.values = {static_cast<float>(std::cos(radians)), static_cast<float>(std::sin(radians))},
          .seconds = seconds,
          .limits = kLimits};
}

}  // namespace

class SpeakerTrackerTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void voicesThatDifferAreDifferentSpeakers() {
    SpeakerTracker speakers;
    QCOMPARE(speakers.next(voiceAt(0)), "1");
    QCOMPARE(speakers.next(voiceAt(90)), "2");
    QCOMPARE(speakers.next(voiceAt(10)), "1");
    QCOMPARE(speakers.next(voiceAt(85)), "2");
    QCOMPARE(speakers.next(voiceAt(180)), "3");
  }

  void theLastSpeakerGoesOnIfTheVoiceIsNotClearlyAnother() {
    SpeakerTracker speakers;
    speakers.next(voiceAt(0));
    speakers.next(voiceAt(90));
    // About as like the one as the other, whose means they move.
    QCOMPARE(speakers.next(voiceAt(43)), "2");
    QCOMPARE(speakers.next(voiceAt(5)), "1");
    QCOMPARE(speakers.next(voiceAt(36)), "1");
  }

  void aVoiceBetweenTheLimitsBringsNoNewSpeaker() {
    SpeakerTracker speakers;
    speakers.next(voiceAt(0));
    QCOMPARE(speakers.next(voiceAt(65)), "1");
    // The mean is between both now.
    QCOMPARE(speakers.next(voiceAt(115)), "2");
  }

  void aShortLineBringsNoNewSpeaker() {
    SpeakerTracker speakers;
    speakers.next(voiceAt(0));
    QCOMPARE(speakers.next(voiceAt(90, 1.6)), "1");
    QCOMPARE(speakers.next(voiceAt(90)), "2");
    // But it can be of one who is known.
    QCOMPARE(speakers.next(voiceAt(0, 1.6)), "1");
  }

  void aSpeakersVoiceIsLearned() {
    SpeakerTracker speakers;
    speakers.next(voiceAt(0));
    for (const double degrees : {20, 30, 40, 50, 60, 60, 60}) speakers.next(voiceAt(degrees));
    // Its cosine with the first print alone is 0.
    QCOMPARE(speakers.next(voiceAt(90)), "1");
  }

  void aPrintThatIsNotOfTheVoiceTeachesNothing() {
    SpeakerTracker speakers;
    speakers.next(voiceAt(0));
    for (int i = 0; i < 50; ++i) QCOMPARE(speakers.next(voiceAt(90, 2)), "1");
    QCOMPARE(speakers.next(voiceAt(90)), "2");
  }

  void renamedSpeakersKeepTheirNames() {
    SpeakerTracker speakers;
    speakers.next(voiceAt(0));
    speakers.next(voiceAt(90));
    speakers.rename("1", "Anna");
    QCOMPARE(speakers.next(voiceAt(0)), "Anna");
    QCOMPARE(speakers.next(voiceAt(90)), "2");
    QCOMPARE(speakers.next(voiceAt(180)), "3");
    // Two numbers of one person become one.
    speakers.rename("3", "Anna");
    QCOMPARE(speakers.next(voiceAt(180)), "Anna");
    speakers.rename("Anna", "Berta");
    QCOMPARE(speakers.next(voiceAt(0)), "Berta");
    QCOMPARE(speakers.next(voiceAt(180)), "Berta");
  }

  void printsOfAnotherModelAreNewVoices() {
    SpeakerTracker speakers;
    speakers.next(voiceAt(0));
    VoicePrint other = voiceAt(0);
    other.values.push_back(0);
    QCOMPARE(speakers.next(other), "2");
    QCOMPARE(speakers.next(voiceAt(0)), "1");
  }
};

QTEST_GUILESS_MAIN(SpeakerTrackerTest)
#include "speaker_tracker_test.moc"
