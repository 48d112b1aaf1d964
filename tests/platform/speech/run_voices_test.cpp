// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/local_speech_run.h"
#include "support/await.h"
#include "support/manual_clock.h"
#include "support/suite.h"

#include <atomic>

using namespace velun;

namespace {

/// Hears one word from 0.5 s after the beginning of the audio until 0.5 s before its end; with
/// `hasPause` two, with half a second between them in the middle.
class OneWordBackend final : public RecognizerBackend {
 public:
  explicit OneWordBackend(bool hasPause) : hasPause_(hasPause) {}
  void acceptAudio(std::span<const float> samples) override {
    seconds_ += static_cast<double>(samples.size()) / kSpeechSampleRate;
    results_.push_back({"word", false});
  }
  std::vector<TranscriptionResult> poll() override { return std::exchange(results_, {}); }
  void finalize() override {
    results_.push_back({"word", true, {{"word", begin_ + 0.5, seconds_ - 0.5}}});
    if (hasPause_) {
      const double middle = (begin_ + seconds_) / 2;
      results_.back().words = {{"one", begin_ + 0.5, middle - 0.25},
                               {"two", middle + 0.25, seconds_ - 0.5}};
    }
    results_.back().until = seconds_;
    begin_ = seconds_;
  }
  void cancel() override {}

 private:
  const bool hasPause_;
  std::vector<TranscriptionResult> results_;
  double begin_ = 0;
  double seconds_ = 0;
};

struct VoiceScript {
  std::vector<std::vector<float>> asked;  ///< read after the end of a run
  std::optional<QString> failure;
  std::atomic<bool> isCancelled = false;
  std::atomic<bool> hasTwo = false;
};

class ScriptedVoices final : public VoicePrinter {
 public:
  explicit ScriptedVoices(std::shared_ptr<VoiceScript> script) : script_(std::move(script)) {}
  std::optional<VoicePrint> print(std::span<const float> samples) override {
    script_->asked.emplace_back(samples.begin(), samples.end());
    if (script_->failure) return std::nullopt;
    // The second half of the first eight seconds is another voice, if there are two.
    const bool isSecond = script_->hasTwo && samples.front() > 0.008F;
    return VoicePrint{.values = {isSecond ? 0.0F : 1.0F, isSecond ? 1.0F : 0.0F}, .seconds = 2};
  }
  std::optional<QString> failure() const override { return script_->failure; }
  void cancel() override { script_->isCancelled = true; }

 private:
  std::shared_ptr<VoiceScript> script_;
};

struct Fixture {
  void start() {
    run = std::make_unique<LocalSpeechRun>(
        std::vector<SpeechRecognizer>{{"only", "Only",
                                       [hasPause = hasPause] {
                                         return std::make_unique<OneWordBackend>(hasPause);
                                       }}},
        input, clock, std::make_unique<ScriptedVoices>(script));
    QObject::connect(run.get(), &SpeechRun::resultReady, [this](const TranscriptionResult& result) {
      if (result.isFinal) voices.push_back(result.voice);
    });
    QObject::connect(run.get(), &SpeechRun::noticedBriefly,
                     [this](const QString& notice) { notices << notice; });
  }
  /// The value of each sample tells the half second in which it is.
  void say(int halfSeconds) {
    for (int i = 0; i < halfSeconds; ++i) {
      // Of audio that waits too long, some would be skipped.
      input->awaitRoom(1);
      const auto value = static_cast<float>(++said) / 1000;
      input->yield({std::vector<float>(kSpeechSampleRate / 2, value)});
    }
    test::await(run->settle());
  }

  test::ManualClock clock;
  std::shared_ptr<VoiceScript> script = std::make_shared<VoiceScript>();
  std::shared_ptr<SpeechInput> input = std::make_shared<SpeechInput>();
  std::unique_ptr<LocalSpeechRun> run;
  std::vector<std::optional<VoicePrint>> voices;
  QStringList notices;
  int said = 0;
  bool hasPause = false;
};

}  // namespace

class RunVoicesTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void aFinalResultHasTheVoiceOfItsWords() {
    Fixture f;
    f.start();
    f.say(6);
    f.say(5);
    test::await(f.run->cancel());
    QCOMPARE(f.voices.size(), std::size_t(2));
    QVERIFY(f.voices[0] && f.voices[0]->seconds == 2);
    QVERIFY(f.voices[1]);
    QCOMPARE(f.script->asked.size(), std::size_t(2));
    const std::vector<float>& first = f.script->asked[0];
    QCOMPARE(first.size(), std::size_t(2 * kSpeechSampleRate));
    QCOMPARE(first.front(), 0.002F);
    QCOMPARE(first.back(), 0.005F);
    QCOMPARE(f.script->asked[1].front(), 0.008F);
    QCOMPARE(f.script->asked[1].back(), 0.010F);
  }

  void shortSpeechHasNoVoice() {
    Fixture f;
    f.start();
    f.say(4);
    test::await(f.run->cancel());
    QCOMPARE(f.voices.size(), std::size_t(1));
    QVERIFY(!f.voices[0]);
    QVERIFY(f.script->asked.empty());
  }

  void longSpeechIsDescribedByItsBeginning() {
    Fixture f;
    f.start();
    f.say(30);
    test::await(f.run->cancel());
    QCOMPARE(f.script->asked.size(), std::size_t(1));
    QCOMPARE(f.script->asked[0].size(), std::size_t(10 * kSpeechSampleRate));
    QCOMPARE(f.script->asked[0].front(), 0.002F);
  }

  void twoVoicesInOneResultAreNone() {
    for (const bool hasTwo : {false, true}) {
      Fixture f;
      f.hasPause = true;
      f.script->hasTwo = hasTwo;
      f.start();
      f.say(16);
      test::await(f.run->cancel());
      QCOMPARE(f.voices.size(), std::size_t(1));
      QCOMPARE(f.voices[0].has_value(), !hasTwo);
      QCOMPARE(f.script->asked.size(), std::size_t(3));
    }
  }

  void aFailureIsToldOnceAndCaptionsGoOn() {
    Fixture f;
    f.script->failure = "No speakers any more";
    f.start();
    f.say(6);
    f.say(6);
    test::await(f.run->finish());
    QCOMPARE(f.notices, QStringList("No speakers any more"));
    QCOMPARE(f.script->asked.size(), std::size_t(1));
    QVERIFY(f.voices.size() >= 2);
    for (const auto& voice : f.voices) QVERIFY(!voice);
  }

  void cancellingTheRunCancelsTheVoices() {
    Fixture f;
    f.start();
    f.say(6);
    QVERIFY(!f.script->isCancelled);
    test::await(f.run->cancel());
    QVERIFY(f.script->isCancelled);
  }
};

QTEST_GUILESS_MAIN(RunVoicesTest)
#include "run_voices_test.moc"
