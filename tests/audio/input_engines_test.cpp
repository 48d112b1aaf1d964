// SPDX-License-Identifier: GPL-3.0-or-later
#include "audio/input_engines.h"

#include "audio/start_failure.h"
#include "support/manual_clock.h"
#include "support/scripted_recognizer.h"
#include "support/settle.h"
#include "support/suite.h"

using namespace velun;
using test::ScriptedRecognizer;
using test::settle;

namespace {

const AudioTarget kComputer{AudioTarget::Kind::output, {}, {}};
const AudioTarget kMicrophone{AudioTarget::Kind::input, {}, {}};

/// Both engines, what they are asked, and what comes out.
struct Stage {
  std::shared_ptr<ScriptedRecognizer::Script> first =
      std::make_shared<ScriptedRecognizer::Script>();
  std::shared_ptr<ScriptedRecognizer::Script> second =
      std::make_shared<ScriptedRecognizer::Script>();
  test::ManualClock clock;
  std::shared_ptr<EchoCanceller> canceller = std::make_shared<EchoCanceller>(clock);
  ScriptedRecognizer* computer = nullptr;
  ScriptedRecognizer* microphone = nullptr;
  std::unique_ptr<InputEngines> engines;
  std::vector<SpeechRecognitionEvent> events;
  std::optional<QString> failure;
  bool isCancelled = false;
  std::stop_source stopping;

  Stage() {
    auto one = std::make_unique<ScriptedRecognizer>(first);
    auto other = std::make_unique<ScriptedRecognizer>(second);
    computer = one.get();
    microphone = other.get();
    engines = std::make_unique<InputEngines>(std::move(one), std::move(other), canceller, clock);
    QObject::connect(engines.get(), &SpeechRecognizing::eventOccurred, engines.get(),
                     [this](const SpeechRecognitionEvent& event) { events.push_back(event); });
  }

  static QCoro::Task<> run(Stage* stage, CaptionTargets targets) {
    const QString locale = QStringLiteral("en_US");
    try {
      QCoro::Task<> starting = stage->engines->start(locale, targets, stage->stopping.get_token());
      co_await starting;
    } catch (const Cancelled&) {
      stage->isCancelled = true;
    } catch (const std::exception& error) {
      stage->failure = descriptionOf(error);
    }
  }
  void start(const CaptionTargets& targets) {
    tasks.push_back(run(this, targets));
    settle();
  }
  void stop() {
    tasks.push_back(engines->stop());
    settle();
  }

  QStringList statuses() const {
    QStringList texts;
    for (const SpeechRecognitionEvent& event : events) {
      if (const auto* status = std::get_if<StatusEvent>(&event)) {
        texts += status->text.value_or("none");
      }
    }
    return texts;
  }

  std::vector<QCoro::Task<>> tasks;
};

}  // namespace

/// Captions of the computer and of the microphone at once.
class InputEnginesTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void oneTargetUsesTheFirstEngineOnly() {
    Stage stage;
    stage.start(kMicrophone);
    QCOMPARE(stage.first->calls, QStringList({"start en_US microphone", "started"}));
    QVERIFY(stage.second->calls.isEmpty());
    stage.computer->emitEvent(FailureEvent{"gone"});
    QVERIFY(std::holds_alternative<FailureEvent>(stage.events.back()));
    stage.stop();
    QVERIFY(stage.second->calls.isEmpty());
  }

  void twoTargetsHaveAnEngineEach() {
    Stage stage;
    stage.start({kComputer, kMicrophone});
    QCOMPARE(stage.first->calls, QStringList({"start en_US computer", "started"}));
    QCOMPARE(stage.second->calls, QStringList({"start en_US microphone", "started"}));
    stage.microphone->emitEvent(DraftEvent{"hello", AudioInput::microphone});
    QVERIFY(stage.events.back() ==
            SpeechRecognitionEvent(DraftEvent{"hello", AudioInput::microphone}));
    stage.second->lastWords = {FinalEvent{"Hello.", "en_US", AudioInput::microphone}};
    stage.stop();
    QVERIFY(std::holds_alternative<FinalEvent>(stage.events.back()));
    QVERIFY(!stage.first->isStarted && !stage.second->isStarted);
  }

  void bothStopAtTheSameTime() {
    Stage stage;
    stage.start({kComputer, kMicrophone});
    stage.first->holdsStops = stage.second->holdsStops = true;
    stage.stop();
    QVERIFY(stage.first->isBusy() && stage.second->isBusy());
    stage.second->release();
    stage.first->release();
    settle();
    QVERIFY(!stage.first->isBusy() && !stage.second->isBusy());
  }

  void oneThatCannotStartDoesNotStopTheOther_data() {
    QTest::addColumn<bool>("isComputer");
    QTest::addColumn<QString>("status");
    QTest::addRow("computer") << true << "The computer’s sound is not captioned: No sound";
    QTest::addRow("microphone") << false << "The microphone is not captioned: No sound";
  }
  void oneThatCannotStartDoesNotStopTheOther() {
    QFETCH(bool, isComputer);
    QFETCH(QString, status);
    Stage stage;
    (isComputer ? stage.first : stage.second)->startFailure = "No sound";
    stage.start({kComputer, kMicrophone});
    QVERIFY(!stage.failure);
    QVERIFY((isComputer ? stage.second : stage.first)->isStarted);
    QCOMPARE(stage.statuses(), QStringList({"none", status}));
    stage.stop();
    QCOMPARE(stage.statuses().back(), QString("none"));
  }

  void theStartFailsWhenNeitherStarts() {
    Stage stage;
    stage.first->startFailure = "No recognizer";
    stage.second->startFailure = "No microphone";
    stage.start({kComputer, kMicrophone});
    QCOMPARE(stage.failure, std::optional<QString>("No recognizer"));
  }

  void aCancelledStartStopsBoth() {
    Stage stage;
    stage.second->holdsStarts = true;
    stage.start({kComputer, kMicrophone});
    QVERIFY(stage.first->isStarted);
    stage.stopping.request_stop();
    settle();
    QVERIFY(stage.isCancelled);
    QVERIFY(!stage.first->isStarted && !stage.second->isStarted);
  }

  void oneThatFailsLaterIsStoppedAndSaid() {
    Stage stage;
    stage.start({kComputer, kMicrophone});
    stage.microphone->emitEvent(DraftEvent{"hel", AudioInput::microphone});
    stage.microphone->emitEvent(FailureEvent{"It was unplugged."});
    settle();
    QVERIFY(stage.first->isStarted);
    QVERIFY(!stage.second->isStarted);
    QCOMPARE(stage.statuses().back(),
             QString("The microphone is not captioned: It was unplugged."));
    const auto clears = SpeechRecognitionEvent(DraftEvent{{}, AudioInput::microphone});
    QVERIFY(std::ranges::find(stage.events, clears) != stage.events.end());
    stage.computer->emitEvent(FailureEvent{"The sound system ended."});
    QVERIFY(stage.events.back() == SpeechRecognitionEvent(FailureEvent{"The sound system ended."}));
  }

  void sameStatusOfBothIsSaidOnce() {
    Stage stage;
    stage.start({kComputer, kMicrophone});
    stage.computer->emitEvent(StatusEvent{"Behind."});
    stage.microphone->emitEvent(StatusEvent{"Behind."});
    stage.microphone->emitEvent(StatusEvent{"Missing."});
    stage.computer->emitEvent(StatusEvent{});
    QCOMPARE(stage.statuses(), QStringList({"none", "Behind.", "Behind.\nMissing.", "Missing."}));
  }

  void missingDeviceNamesItsInput() {
    Stage stage;
    stage.start({kComputer, kMicrophone});
    QCOMPARE(stage.engines->missingInput(), std::nullopt);
    stage.microphone->setMissing(AudioInput::microphone);
    QCOMPARE(stage.engines->missingInput(), std::optional(AudioInput::microphone));
  }

  void echoOfTheLoudspeakersIsNotTheUsersWords() {
    Stage stage;
    stage.start({kComputer, kMicrophone});
    const Instant now = stage.clock.now();
    const FinalEvent::Spoken spoken{now, now + std::chrono::seconds(3)};
    stage.computer->emitEvent(
        FinalEvent{"The ship left the harbour at noon.", "en_US", AudioInput::computer, spoken});
    stage.events.clear();
    stage.microphone->emitEvent(
        FinalEvent{"the ship left the harbour at noon", "en_US", AudioInput::microphone, spoken});
    QCOMPARE(stage.events.size(), 1U);
    QVERIFY(stage.events.back() == SpeechRecognitionEvent(DraftEvent{{}, AudioInput::microphone}));
    stage.microphone->emitEvent(
        FinalEvent{"I was there.", "en_US", AudioInput::microphone, spoken});
    QCOMPARE(std::get<FinalEvent>(stage.events.back()).text, QString("I was there."));
  }

  void meterShowsTheLouderInput() {
    Stage stage;
    stage.first->bands = {-10, -40};
    QCOMPARE(stage.engines->meterBands(), std::vector<float>({-10, -40}));
    stage.second->bands = {-30, -20};
    QCOMPARE(stage.engines->meterBands(), std::vector<float>({-10, -20}));
  }

  void echoIsCancelledWhileBothAreCaptioned() {
    Stage stage;
    const std::vector<float> sound(320, 0.1F);
    const auto passesUnchanged = [&] {
      return stage.canceller->withoutEcho(sound).data() == sound.data();
    };
    QVERIFY(passesUnchanged());
    stage.start(CaptionTargets(kComputer, kMicrophone));
    QVERIFY(!passesUnchanged());
    stage.stop();
    QVERIFY(passesUnchanged());
    stage.start(CaptionTargets(kMicrophone));
    QVERIFY(passesUnchanged());
  }
};

QTEST_GUILESS_MAIN(InputEnginesTest)
#include "input_engines_test.moc"
