// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/foundation/failure.h"
#include "platform/speech/built_in_fixture.h"
#include "support/installed_recognizer.h"
#include "support/suite.h"

#include <atomic>
#include <thread>

using namespace velun;
using test::clip;
using test::silence;

namespace {

/// Appends a mark to every word, and ends the text unless it goes on. A slow one returns only once
/// it is cancelled.
class ScriptedPunctuation final : public PunctuationRestorer {
 public:
  struct Script {
    bool isSlow = false;
    bool isLoaded = false;
    bool goesOn = false;
    /// The failure of the first text.
    std::optional<QString> failure;
    std::atomic<bool> isWaiting = false;
  };

  explicit ScriptedPunctuation(Script& script) : script_(script) {}
  std::optional<QString> failure() const override { return failure_; }
  void load() override { script_.isLoaded = true; }
  QString restored(const QString& text) override {
    script_.isWaiting = true;
    if (script_.isSlow) cancelled_.wait(false);
    failure_ = script_.failure;
    if (failure_) return text;
    if (script_.goesOn) return text;
    return QString(text).remove(" |").remove(" +").replace(" ", ", ") + "!";
  }
  void cancel() override {
    cancelled_ = true;
    cancelled_.notify_all();
  }

 private:
  Script& script_;
  std::optional<QString> failure_;
  std::atomic<bool> cancelled_ = false;
};

struct ScriptedPunctuationProvider final : PunctuationProvider {
  PunctuationRestorer::Factory punctuationFactory(const QString& locale) const override {
    if (locale != "en_US") return {};
    return [this] {
      return std::make_unique<ScriptedPunctuation>(script);
    };
  }
  mutable ScriptedPunctuation::Script script;
};

std::unique_ptr<RecognizerBackend> loaded(
    const std::shared_ptr<ScriptedPunctuationProvider>& punctuation) {
  const BuiltInRecognizerProvider provider(test::builtInFiles(), punctuation);
  auto recognizer = test::installedRecognizer(provider, "en_US")();
  recognizer->load();
  return recognizer;
}

}  // namespace

/// The built-in recognizer with a restorer of punctuation.
class PunctuatedRecognizerTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void draftsHaveNoFinalPunctuation() {
    const auto punctuation = std::make_shared<ScriptedPunctuationProvider>();
    const auto recognizer = loaded(punctuation);
    recognizer->acceptAudio(clip("0880"));
    recognizer->finalize();
    const std::vector<TranscriptionResult> results = recognizer->poll();
    QVERIFY(results.size() > 1);
    for (const TranscriptionResult& result : results) {
      QVERIFY2(result.text.endsWith("!") == result.isFinal, qPrintable(result.text));
    }
    QVERIFY(punctuation->script.isLoaded);
    QVERIFY(!recognizer->notice());
  }

  void breathInLongSpeechDoesNotEndTheSentence() {
    const auto punctuation = std::make_shared<ScriptedPunctuationProvider>();
    punctuation->script.goesOn = true;
    const auto recognizer = loaded(punctuation);
    std::vector<float> samples;
    for (const char* number : {"0870", "0880"}) {
      const std::vector<float> one = clip(number);
      samples.insert(samples.end(), one.begin() + 3200, one.end() - 3200);
    }
    const std::vector<float> breath = silence(0.2);
    samples.insert(samples.end(), breath.begin(), breath.end());
    const std::vector<float> rest = clip("0930");
    samples.insert(samples.end(), rest.begin(), rest.end());
    recognizer->acceptAudio(samples);
    recognizer->finalize();
    std::vector<TranscriptionResult> finals = recognizer->poll();
    std::erase_if(finals, [](const TranscriptionResult& result) { return !result.isFinal; });
    QCOMPARE(finals.size(), 1U);
    QVERIFY2(finals[0].text.contains("young man") && finals[0].text.endsWith("amiable himself"),
             qPrintable(finals[0].text));
  }

  void wordsGoOnWhenPunctuationFails() {
    const auto punctuation = std::make_shared<ScriptedPunctuationProvider>();
    punctuation->script.failure = "no marks";
    const auto recognizer = loaded(punctuation);
    QVERIFY(!recognizer->notice());
    recognizer->acceptAudio(clip("0880"));
    recognizer->finalize();
    const std::vector<TranscriptionResult> results = recognizer->poll();
    QVERIFY(!results.empty() && results.back().isFinal);
    QVERIFY2(results.back().text.startsWith("He was not"), qPrintable(results.back().text));
    QCOMPARE(recognizer->notice(), std::optional<QString>("no marks"));
  }

  void cancelInterruptsPunctuation() {
    const auto punctuation = std::make_shared<ScriptedPunctuationProvider>();
    punctuation->script.isSlow = true;
    const auto recognizer = loaded(punctuation);
    std::thread settling([&] {
      try {
        recognizer->acceptAudio(clip("0880"));
        recognizer->finalize();
        recognizer->poll();
      } catch (const Failure&) {
        // A recognizer that was cancelled may fail.
      }
    });
    const bool isWaiting =
        QTest::qWaitFor([&] { return punctuation->script.isWaiting.load(); }, 60000);
    recognizer->cancel();
    settling.join();
    QVERIFY(isWaiting);
  }
};

QTEST_GUILESS_MAIN(PunctuatedRecognizerTest)
#include "punctuated_recognizer_test.moc"
