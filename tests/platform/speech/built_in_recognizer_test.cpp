// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/foundation/failure.h"
#include "platform/speech/built_in_fixture.h"
#include "platform/speech/whispered.h"
#include "support/installed_recognizer.h"
#include "support/suite.h"

#include <algorithm>
#include <QProcess>
#include <QTemporaryDir>

using namespace velun;
using test::builtInFiles;
using test::clip;
using test::silence;

class BuiltInRecognizerTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    const BuiltInRecognizerProvider provider(builtInFiles());
    QVERIFY2(provider.isInstalled("en_US"), "The recognizer is missing: run scripts/setup.");
    recognizer_ = test::installedRecognizer(provider, "en_US")();
    recognizer_->load();
  }
  void cleanup() {
    recognizer_->finalize();
    collect();
    finals_.clear();
    drafts_.clear();
    results_.clear();
  }
  void cleanupTestCase() { recognizer_.reset(); }

  void phraseIsDraftedThenFinal() {
    accept(clip("0880"));
    accept(silence(1));
    QVERIFY(waitForFinal());
    QCOMPARE(finals_.size(), 1);
    QVERIFY2(finals_[0].startsWith("He was not") && finals_[0].endsWith("young man"),
             qPrintable(finals_[0]));
    QVERIFY(!drafts_.isEmpty());
  }

  void firstWordsAreDraftedWhileTheSentenceGoesOn() {
    // The clip begins with 0.4 s without speech.
    std::vector<float> samples = clip("0880");
    samples.resize(static_cast<std::size_t>(1.8 * 16000));
    accept(samples);
    const bool isDrafted = QTest::qWaitFor(
        [this] {
          collect();
          return !drafts_.isEmpty() || !recognizer_->expectsResults();
        },
        20000);
    QVERIFY(isDrafted);
    QVERIFY(!drafts_.isEmpty());
    QVERIFY2(drafts_[0].startsWith("He"), qPrintable(drafts_[0]));
  }

  void wordsHaveTimesAndConfidences() {
    accept(silence(2));
    const double begin = heardSeconds_;
    accept(clip("0880"));
    const double end = heardSeconds_;
    accept(silence(1));
    QVERIFY(waitForFinal());
    for (const TranscriptionResult& result : results_) {
      QVERIFY(!result.words.empty());
      double last = begin;
      for (const RecognizedWord& word : result.words) {
        const QString times = QString("%1: %2 to %3, the word before until %4")
                                  .arg(word.text)
                                  .arg(word.start)
                                  .arg(word.end)
                                  .arg(last);
        QVERIFY2(word.start >= last - 0.01 && word.end > word.start, qPrintable(times));
        QVERIFY(word.confidence > 0 && word.confidence <= 1);
        last = word.end;
      }
      QVERIFY2(last <= end, qPrintable(result.text));
    }
    // "He" begins after the clip's first 0.4 s, "man" ends 0.3 s before its end.
    const std::vector<RecognizedWord>& words = results_.back().words;
    QCOMPARE(words.size(), 8U);
    QCOMPARE(words.front().text, QString("he"));
    QVERIFY2(words.front().start - begin < 0.8, qPrintable(QString::number(words.front().start)));
    QVERIFY2(end - words.back().end < 0.8, qPrintable(QString::number(words.back().end)));
  }

  void finalizeSettlesWithoutAPause() {
    std::vector<float> samples = clip("0880");
    samples.resize(samples.size() - 4000);
    accept(samples);
    recognizer_->finalize();
    collect();
    QCOMPARE(finals_.size(), 1);
    QVERIFY(!recognizer_->expectsResults());
  }

  void lastWordIsNotRepeatedAtTheBeginning() {
    // Neither the beginning nor the end is silent.
    std::vector<float> samples = clip("0880");
    samples.erase(samples.begin(), samples.begin() + 3200);
    samples.resize(samples.size() - 4000);
    accept(samples);
    recognizer_->finalize();
    collect();
    QCOMPARE(finals_.size(), 1);
    QVERIFY2(finals_[0].startsWith("He was"), qPrintable(finals_[0]));
  }

  void silenceHasNoResults() {
    accept(silence(20));
    recognizer_->finalize();
    collect();
    QVERIFY(finals_.isEmpty());
    QVERIFY(drafts_.isEmpty());
    QVERIFY(!recognizer_->expectsResults());
  }

  void quietSpeechIsRecognizedEquallyWell() {
    std::vector<float> samples = clip("0880");
    for (float& sample : samples) sample *= 0.03F;
    accept(samples);
    recognizer_->finalize();
    collect();
    QCOMPARE(finals_.size(), 1);
    QVERIFY2(finals_[0].endsWith("young man"), qPrintable(finals_[0]));
  }

  void whisperedSpeechIsRecognized() {
    accept(test::whispered(clip("0890")));
    recognizer_->finalize();
    collect();
    QCOMPARE(finals_.size(), 1);
    QVERIFY2(finals_[0].contains("rather cold hearted"), qPrintable(finals_[0]));
  }

  void louderPhraseAfterQuietSpeechIsRecognized() {
    std::vector<float> quiet = clip("0880");
    for (float& sample : quiet) sample *= 0.03F;
    accept(quiet);
    accept(silence(1));
    accept(test::whispered(clip("0890")));
    recognizer_->finalize();
    collect();
    QCOMPARE(finals_.size(), 2);
    QVERIFY2(finals_[1].contains("rather cold hearted"), qPrintable(finals_[1]));
  }

  void draftsAreRightSoonAfterTheLevelChanged() {
    std::vector<float> quiet = clip("0880");
    for (float& sample : quiet) sample *= 0.03F;
    accept(quiet);
    accept(silence(1));
    QVERIFY(waitForFinal());
    drafts_.clear();
    accept(clip("0870"));
    const bool isDrafted = QTest::qWaitFor(
        [this] {
          collect();
          return drafts_.join(" ").contains("leisure to consider") || finals_.size() > 1;
        },
        20000);
    QVERIFY2(isDrafted, qPrintable(drafts_.join("|")));
    QVERIFY2(drafts_.join(" ").contains("leisure to consider"), qPrintable(drafts_.join("|")));
  }

  void soundsWithoutSpeechAreNotWords_data() {
    QTest::addColumn<QStringList>("effects");
    const auto row = [](const char* name, const QString& effects) {
      QTest::newRow(name) << effects.split(u' ');
    };
    row("tone", "synth 8 sine 220 gain -14");
    row("steady noise", "synth 8 whitenoise gain -20");
    // Without pitch, like a whisper.
    row("noise in bursts", "synth 12 whitenoise tremolo 4 95 gain -14");
    row("noise of waves", "synth 12 pinknoise tremolo 0.4 90 gain -14");
    row("noise of a narrow band", "synth 12 whitenoise band 1800 900 tremolo 3 90 gain -10");
    row("keystrokes", "synth 0.03 whitenoise fade 0.002 0.03 0.025 pad 0 0.12 repeat 60 gain -12");
    row("plucked string", "synth 1 pluck 220 repeat 14 gain -12");
  }
  void soundsWithoutSpeechAreNotWords() {
    QFETCH(const QStringList, effects);
    const QTemporaryDir dir;
    const QString path = dir.filePath("sound.wav");
    QCOMPARE(
        QProcess::execute(
            "sox", QStringList({"-n", "-R", "-r", "16000", "-c", "1", "-b", "16", path}) + effects),
        0);
    accept(silence(5));
    accept(test::clipSamples(path));
    accept(silence(1));
    recognizer_->finalize();
    collect();
    QVERIFY2(finals_.isEmpty(), qPrintable(finals_.join("|")));
    QVERIFY2(drafts_.isEmpty(), qPrintable(drafts_.join("|")));
  }

  void speechWithoutPausesIsCutAndKept() {
    // Five clips one after another, without the silence around them.
    std::vector<float> samples;
    for (const char* number : {"0920", "0930", "0890", "0880", "0870"}) {
      std::vector<float> one = clip(number);
      samples.insert(samples.end(), one.begin() + 3200, one.end() - 3200);
    }
    accept(samples);
    recognizer_->finalize();
    collect();
    QVERIFY(finals_.size() >= 2);
    const QString text = finals_.join(" ");
    QVERIFY2(text.contains("respectable") && text.contains("amiable himself"), qPrintable(text));
    // Of 71 words.
    QVERIFY2(text.count(' ') > 65 && text.count(' ') < 76, qPrintable(text));
    const auto isCut = std::mem_fn(&TranscriptionResult::isCut);
    QVERIFY(std::any_of(results_.begin(), results_.end(), isCut) && !results_.back().isCut);
  }

  /// Of which several phrases are heard at once.
  void recordingHasTheSameWordsWithoutDrafts() {
    std::vector<float> samples;
    for (const char* number : {"0870", "0880", "0890", "0880"}) {
      const std::vector<float> pause = silence(1.5);
      const std::vector<float> phrase = clip(number);
      samples.insert(samples.end(), phrase.begin(), phrase.end());
      samples.insert(samples.end(), pause.begin(), pause.end());
    }
    accept(samples);
    recognizer_->finalize();
    collect();
    QVERIFY(finals_.size() >= 4);
    const std::unique_ptr<RecognizerBackend> recorded =
        test::installedRecognizer(BuiltInRecognizerProvider(builtInFiles()), "en_US")();
    recorded->expectRecording();
    recorded->load();
    recorded->acceptAudio(samples);
    recorded->finalize();
    const std::vector<TranscriptionResult> results = recorded->poll();
    QStringList texts;
    double last = 0;
    for (const TranscriptionResult& result : results) {
      QVERIFY(result.isFinal);
      QVERIFY(result.words.front().start >= last);
      last = result.words.back().end;
      texts << result.text;
    }
    QCOMPARE(texts, finals_);
    QVERIFY(!recorded->expectsResults());
  }

  void cancelInterruptsAHearing() {
    const auto recognizer =
        test::installedRecognizer(BuiltInRecognizerProvider(builtInFiles()), "en_US")();
    recognizer->load();
    // The audio ends in the middle of a word.
    std::vector<float> samples = clip("0870");
    samples.resize(64000);
    recognizer->acceptAudio(samples);
    recognizer->poll();
    recognizer->cancel();
    QVERIFY_EXCEPTION_THROWN(recognizer->finalize(), Failure);
  }

  void missingPunctuationIsNoticed() {
    QCOMPARE(recognizer_->notice().value_or(QString()),
             QString("Captions have no punctuation, because a file of Velun is missing or damaged. "
                     "Install Velun again."));
  }

 private:
  void accept(const std::vector<float>& samples) {
    for (std::size_t start = 0; start < samples.size(); start += 1000) {
      recognizer_->acceptAudio(std::span<const float>(samples).subspan(
          start, std::min<std::size_t>(1000, samples.size() - start)));
      collect();
    }
    heardSeconds_ += static_cast<double>(samples.size()) / 16000;
  }
  void collect() {
    for (const TranscriptionResult& result : recognizer_->poll()) {
      (result.isFinal ? finals_ : drafts_).append(result.text);
      results_.push_back(result);
    }
  }
  bool waitForFinal() {
    return QTest::qWaitFor(
        [this] {
          collect();
          return !finals_.isEmpty();
        },
        20000);
  }

  std::unique_ptr<RecognizerBackend> recognizer_;
  QStringList finals_;
  QStringList drafts_;
  std::vector<TranscriptionResult> results_;
  double heardSeconds_ = 0;
};

QTEST_GUILESS_MAIN(BuiltInRecognizerTest)
#include "built_in_recognizer_test.moc"
