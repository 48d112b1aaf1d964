// SPDX-License-Identifier: GPL-3.0-or-later
#include "audio/echo_removal.h"

#include "support/manual_clock.h"
#include "support/suite.h"

using namespace velun;
using namespace std::chrono_literals;

namespace {

const QString kSaid = "The ship left the harbour at noon.";

struct Stage {
  Stage() {
    QObject::connect(&removal, &EchoRemoval::passed, &removal,
                     [this](const SpeechRecognitionEvent& event) { events.push_back(event); });
  }

  FinalEvent final(const QString& text, AudioInput input) const {
    return {text, "en_US", input, FinalEvent::Spoken{clock.now() - 3s, clock.now()}};
  }
  /// Texts of the microphone, drafts in brackets.
  QStringList ofMicrophone() {
    QStringList texts;
    for (const SpeechRecognitionEvent& event : std::exchange(events, {})) {
      if (const auto* draft = std::get_if<DraftEvent>(&event)) {
        if (draft->input == AudioInput::microphone) texts += "(" + draft->text + ")";
      } else if (const auto& final = std::get<FinalEvent>(event);
                 final.input == AudioInput::microphone) {
        texts += final.text;
      }
    }
    return texts;
  }

  test::ManualClock clock;
  EchoRemoval removal{clock};
  std::vector<SpeechRecognitionEvent> events;
};

}  // namespace

class EchoRemovalTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void wordsPassAtOnceWhileTheComputerIsSilent() {
    Stage stage;
    stage.removal.take(stage.final("I was there.", AudioInput::microphone));
    QCOMPARE(stage.ofMicrophone(), QStringList({"I was there."}));
  }

  void finishedTextWaitsForTheComputers() {
    Stage stage;
    stage.removal.take(DraftEvent{"The ship", AudioInput::computer});
    stage.removal.take(
        stage.final(kSaid + " Really? I had not heard of that.", AudioInput::microphone));
    QCOMPARE(stage.ofMicrophone(),
             QStringList({"(" + kSaid + " Really? I had not heard of that.)"}));
    stage.removal.take(stage.final(kSaid, AudioInput::computer));
    QCOMPARE(stage.ofMicrophone(), QStringList({"Really? I had not heard of that."}));
  }

  void nextDraftIsShownBehindWhatWaits() {
    Stage stage;
    stage.removal.take(DraftEvent{"Something", AudioInput::computer});
    stage.removal.take(stage.final("I was there.", AudioInput::microphone));
    stage.removal.take(DraftEvent{"and saw", AudioInput::microphone});
    QCOMPARE(stage.ofMicrophone(), QStringList({"(I was there.)", "(I was there. and saw)"}));
    stage.removal.take(stage.final("Something else.", AudioInput::computer));
    QCOMPARE(stage.ofMicrophone(), QStringList({"I was there.", "(and saw)"}));
  }

  void doesNotWaitForLong() {
    Stage stage;
    stage.removal.take(DraftEvent{"Something long", AudioInput::computer});
    stage.removal.take(stage.final("I was there.", AudioInput::microphone));
    stage.ofMicrophone();
    stage.clock.advance(2400ms);
    QCOMPARE(stage.ofMicrophone(), QStringList());
    stage.clock.advance(200ms);
    QCOMPARE(stage.ofMicrophone(), QStringList({"I was there."}));
  }

  void computersDraftThatVanishesEndsTheWait() {
    Stage stage;
    stage.removal.take(DraftEvent{"Noise", AudioInput::computer});
    stage.removal.take(stage.final("I was there.", AudioInput::microphone));
    stage.ofMicrophone();
    stage.removal.take(DraftEvent{{}, AudioInput::computer});
    QCOMPARE(stage.ofMicrophone(), QStringList({"I was there."}));
  }

  void anotherRunHasNothingOfTheOneBefore() {
    Stage stage;
    stage.removal.take(DraftEvent{"Something", AudioInput::computer});
    stage.removal.take(stage.final("I was there.", AudioInput::microphone));
    stage.ofMicrophone();
    stage.removal.reset();
    stage.clock.advance(5s);
    QCOMPARE(stage.ofMicrophone(), QStringList());
  }
};

QTEST_GUILESS_MAIN(EchoRemovalTest)
#include "echo_removal_test.moc"
