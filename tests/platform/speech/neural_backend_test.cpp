// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/neural/neural_backend.h"

#include "platform/foundation/failure.h"
#include "platform/speech/neural/punctuation_helper.h"
#include "platform/speech/neural_fixture.h"
#include "platform/speech/neural_runs.h"
#include "support/suite.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <thread>

using namespace velun;
using namespace velun::test;

Q_DECLARE_METATYPE(velun::RecognizerSettings)

/// The helper program with the real sherpa-onnx and tiny models.
class NeuralBackendTest final : public test::Suite {
  Q_OBJECT

  const std::vector<float> music_ = sound("h01.wav");
  const std::vector<float> water_ = sound("h08.wav");
  const std::vector<float> numbers_ = sound("h11.wav");

  /// The clip without the silence around it.
  static std::vector<float> spoken(const std::vector<float>& samples) {
    const auto isLoud = [](float sample) {
      return std::abs(sample) > 0.02F;
    };
    const auto begin = std::find_if(samples.begin(), samples.end(), isLoud);
    const auto end = std::find_if(samples.rbegin(), samples.rend(), isLoud).base();
    return {begin, end};
  }

 private Q_SLOTS:
  void initTestCase() {
    QVERIFY2(hasRecognitionLibrary(), "The recognition library is missing: run scripts/setup.");
  }

  void recognizesWords_data() {
    QTest::addColumn<RecognizerSettings>("settings");
    QTest::newRow("transducer") << transducer();
    QTest::newRow("CTC") << zipformerCtc();
    QTest::newRow("NeMo CTC") << nemoCtc();
    QTest::newRow("NeMo transducer") << nemoTransducer();
  }
  void recognizesWords() {
    QFETCH(RecognizerSettings, settings);
    QCOMPARE(finalsOf(settings, music_), QStringList("Turn off the music now"));
    QCOMPARE(finalsOf(settings, numbers_), QStringList("Five six nine ten eight"));
  }

  void recognizesQuietSpeech_data() {
    QTest::addColumn<RecognizerSettings>("settings");
    QTest::newRow("transducer") << transducer();
    QTest::newRow("CTC") << zipformerCtc();
    QTest::newRow("NeMo CTC") << nemoCtc();
    // Not the NeMo transducer, whose features only resemble those that the network was trained
    // with.
  }
  void recognizesQuietSpeech() {
    QFETCH(RecognizerSettings, settings);
    std::vector<float> quiet = music_;
    for (float& sample : quiet) sample *= 0.01F;
    QCOMPARE(finalsOf(settings, quiet), QStringList("Turn off the music now"));
  }

  void languageIsToldToTheModel() {
    RecognizerSettings settings = nemoTransducer();
    settings.language = "de";
    QCOMPARE(finalsOf(settings, music_), QStringList());
    settings.hearsLanguage = false;
    settings.language = "en";
    QCOMPARE(finalsOf(settings, music_), QStringList());
  }

  void caseAndPunctuationOfTheModelAreKept() {
    const std::vector<float> samples = music_ + silence(1.4) + water_ + silence(1.4);
    QCOMPARE(finalsOf(punctuatedTransducer(), samples),
             QStringList({"Turn off the music now.", "Start the water now. Please."}));
    RecognizerSettings settings = nemoTransducer();
    settings.tokens = neuralData("tokens-nemo-punctuated.txt");
    settings.writesMarks = true;
    QCOMPARE(finalsOf(settings, samples),
             QStringList({"Turn off the music now.", "Start the water now. Please."}));
  }

  void sentencesAreLinesWithoutAPause() {
    RecognizerSettings settings = nemoTransducer();
    settings.tokens = neuralData("tokens-nemo-punctuated.txt");
    settings.writesMarks = true;
    NeuralBackend backend(helperProgram(), settings);
    backend.load();
    QStringList finals;
    feed(backend, spoken(music_) + silence(0.15) + spoken(water_) + silence(0.4));
    VERIFY_SOON((keepFinals(backend, finals), !finals.isEmpty()));
    QCOMPARE(finals, QStringList("Turn off the music now."));
  }

  void newerLibraryIsAskedFor() {
    RecognizerSettings settings = transducer();
    settings.minimumLibrary = "99.0";
    NeuralBackend backend(helperProgram(), settings);
    try {
      backend.load();
      QFAIL("it was loaded");
    } catch (const Failure& failure) {
      QVERIFY2(failure.errorDescription().contains("needs sherpa-onnx 99.0 or newer"),
               qPrintable(failure.errorDescription()));
    }
  }

  void phrasesEndByThemselves_data() { recognizesWords_data(); }
  void phrasesEndByThemselves() {
    QFETCH(RecognizerSettings, settings);
    NeuralBackend backend(helperProgram(), settings);
    backend.load();
    QStringList finals;
    feed(backend, music_ + silence(1.2) + water_ + silence(1.2));
    VERIFY_SOON((keepFinals(backend, finals), finals.size() >= 2));
    QCOMPARE(finals, QStringList({"Turn off the music now", "Start the water now please"}));
    VERIFY_SOON((backend.poll(), !backend.expectsResults()));
  }

  void shortPauseDoesNotEndAPhrase() {
    const std::vector<float> samples = spoken(music_) + silence(0.2) + spoken(numbers_);
    QCOMPARE(finalsOf(nemoCtc(), samples).size(), 1);
  }

  void skippedAudioEndsThePhrase_data() { recognizesWords_data(); }
  void skippedAudioEndsThePhrase() {
    QFETCH(RecognizerSettings, settings);
    NeuralBackend backend(helperProgram(), settings);
    backend.load();
    feed(backend, spoken(music_) + silence(0.4));
    backend.skip();
    feed(backend, numbers_);
    QVERIFY(backend.undecodedSeconds() > 0);
    QStringList finals;
    while (backend.undecodedSeconds() > 0) {
      backend.awaitDecoding(std::chrono::milliseconds(20));
      keepFinals(backend, finals);
    }
    backend.finalize();
    keepFinals(backend, finals);
    QCOMPARE(finals, QStringList({"Turn off the music now", "Five six nine ten eight"}));
  }

  void phraseEndsSoonAfterItsLastWord() {
    NeuralBackend backend(helperProgram(), transducer());
    backend.load();
    feed(backend, music_);
    QStringList finals;
    // The file ends with a little silence of its own; a step takes 0.32 s.
    feed(backend, silence(1.1));
    VERIFY_SOON((keepFinals(backend, finals), !finals.isEmpty()));
    QCOMPARE(finals, QStringList("Turn off the music now"));
  }

  void speechWithoutPausesIsCutAndKept_data() { recognizesWords_data(); }
  void speechWithoutPausesIsCutAndKept() {
    QFETCH(RecognizerSettings, settings);
    std::vector<float> samples;
    constexpr int kTimes = 20;
    for (int i = 0; i < kTimes; ++i) samples = samples + spoken(i % 2 ? music_ : numbers_);
    const QStringList finals = finalsOf(settings, samples);
    QVERIFY(finals.size() >= 2);
    // The samples contain a hundred words.
    const QStringList words = finals.join(' ').split(' ');
    QVERIFY2(words.size() >= 85, qPrintable(finals.join(" | ")));
    QVERIFY2(words.size() <= 110, qPrintable(finals.join(" | ")));
  }

  void longPhraseEndsInAShorterPause() {
    const std::vector<float> pause = silence(0.4);
    const std::vector<float> rest = pause + spoken(music_);
    QCOMPARE(finalsOf(nemoCtc(), spoken(numbers_) + rest).size(), 1);
    std::vector<float> samples;
    while (samples.size() < 9UL * 16000) samples = samples + spoken(numbers_);
    const QStringList finals = finalsOf(nemoCtc(), samples + rest);
    QCOMPARE(finals.size(), 2);
    QVERIFY2(finals[0].endsWith("ten eight"), qPrintable(finals[0]));
    QVERIFY2(finals[1].endsWith("music now"), qPrintable(finals[1]));
  }

  void endlessSpeechIsNotCutInAWord() {
    std::vector<float> samples;
    while (samples.size() < 70UL * 16000) samples = samples + spoken(numbers_);
    const QStringList finals = finalsOf(nemoCtc(), samples);
    QVERIFY(finals.size() >= 4);
    const QStringList known{"five", "six", "nine", "ten", "eight"};
    for (const QString& line : finals) {
      const QStringList words = line.toLower().split(u' ');
      QVERIFY2(words.size() <= 31, qPrintable(line));
      QVERIFY2(known.contains(words.first()) && known.contains(words.last()), qPrintable(line));
    }
  }

  void draftsGrow() {
    NeuralBackend backend(helperProgram(), transducer());
    backend.load();
    feed(backend, music_ + silence(1.2));
    backend.finalize();
    const std::vector<TranscriptionResult> results = backend.poll();
    QVERIFY(results.size() > 3);
    QVERIFY(results.back().isFinal);
    for (std::size_t i = 0; i + 1 < results.size(); ++i) {
      QVERIFY(!results[i].isFinal);
      QVERIFY(!results[i].text.isEmpty());
      QVERIFY(results[i] != results[i + 1]);
    }
  }

  void phraseCanBeginWithTheLastToken() {
    const QStringList finals =
        finalsOf(transducer(), sound("six.wav") + silence(1.0) + sound("sixseven.wav"));
    QCOMPARE(finals.size(), 2);
    QVERIFY2(finals[0].endsWith("six"), qPrintable(finals[0]));
    QCOMPARE(finals[1], QString("Six seven"));
  }

  void sizeOfTheBuffersDoesNotMatter() {
    const std::vector<float> samples = music_ + silence(1.0) + numbers_;
    const QStringList whole = finalsOf(transducer(), samples, samples.size());
    QCOMPARE(whole.size(), 2);
    for (const std::size_t piece : {std::size_t(371), std::size_t(1600), std::size_t(16000)}) {
      QCOMPARE(finalsOf(transducer(), samples, piece), whole);
    }
  }

  void finalizeKeepsTheLastWord() {
    NeuralBackend backend(helperProgram(), transducer());
    backend.load();
    QStringList finals;
    for (int i = 0; i < 3; ++i) {
      feed(backend, numbers_);
      backend.finalize();
      keepFinals(backend, finals);
      QVERIFY(!backend.expectsResults());
    }
    const QString phrase = "Five six nine ten eight";
    QCOMPARE(finals, QStringList({phrase, phrase, phrase}));
    backend.finalize();
    QVERIFY(backend.poll().empty());
  }

  void concurrentRecognizersAreIndependent() {
    NeuralBackend first(helperProgram(), transducer());
    first.load();
    NeuralBackend second(helperProgram(), nemoCtc());
    second.load();
    NeuralBackend third(helperProgram(), transducer());
    third.load();
    for (std::size_t at = 0; at < music_.size(); at += 1600) {
      const auto part = [at](const std::vector<float>& samples) {
        const std::size_t begin = std::min(at, samples.size());
        return std::span(samples).subspan(begin,
                                          std::min<std::size_t>(1600, samples.size() - begin));
      };
      first.acceptAudio(part(music_));
      second.acceptAudio(part(numbers_));
      third.acceptAudio(part(water_));
    }
    QStringList finals;
    for (NeuralBackend* each : {&first, &second, &third}) {
      each->finalize();
      keepFinals(*each, finals);
    }
    QCOMPARE(finals[0], QString("Turn off the music now"));
    QVERIFY2(finals[1].startsWith("Five six nine"), qPrintable(finals[1]));
    QVERIFY2(finals[2].startsWith("Start the water"), qPrintable(finals[2]));
  }

  void silenceIsNoPhrase() { QCOMPARE(finalsOf(transducer(), silence(20)), QStringList()); }

  void nonFiniteSamplesAreSilence() {
    std::vector<float> broken(3200, std::numeric_limits<float>::quiet_NaN());
    broken.resize(6400, std::numeric_limits<float>::infinity());
    broken[100] = 1e30F;
    const QStringList finals = finalsOf(transducer(), broken + silence(1) + music_);
    QVERIFY(!finals.isEmpty());
    QVERIFY2(finals.last().contains("urn off the music now"), qPrintable(finals.last()));
  }

  void tokensGiveTheSameText() {
    RecognizerSettings settings = transducer();
    settings.textFromTokens = true;
    QCOMPARE(finalsOf(settings, music_), QStringList("Turn off the music now"));
  }

  void acceptsAnyNumberOfThreads() {
    RecognizerSettings settings = transducer();
    for (const int threads : {-3, 0, 10000}) {
      settings.threads = threads;
      QCOMPARE(finalsOf(settings, music_), QStringList("Turn off the music now"));
    }
  }

  void finalsArePunctuated() {
    RecognizerSettings settings = transducer();
    settings.punctuationModel = neuralData("punctuation.onnx");
    settings.punctuationVocabulary = neuralData("punctuation.vocab");
    QCOMPARE(finalsOf(settings, music_).join(u' '), QString("Turn. Off. The. Music. Now."));
  }

  void sentencesAreLinesBeforeThePhraseEnds() {
    RecognizerSettings settings = transducer();
    settings.punctuationModel = neuralData("punctuation.onnx");
    settings.punctuationVocabulary = neuralData("punctuation.vocab");
    NeuralBackend backend(helperProgram(), settings);
    backend.load();
    feed(backend, music_);
    QStringList finals;
    VERIFY_SOON((keepFinals(backend, finals), finals.size() >= 2));
    QVERIFY(backend.expectsResults());
    QCOMPARE(finals.first(2), QStringList({"Turn.", "Off."}));
  }

  void finalAddsOnlyTheEndOfTheSentence() {
    RecognizerSettings settings = transducer();
    settings.punctuationModel = neuralData("punctuation.onnx");
    settings.punctuationVocabulary = neuralData("punctuation.vocab");
    NeuralBackend backend(helperProgram(), settings);
    backend.load();
    feed(backend, music_);
    backend.finalize();
    const std::vector<TranscriptionResult> results = backend.poll();
    QVERIFY(results.size() > 1);
    QCOMPARE(results.back().text, QString("Music. Now."));
    QCOMPARE(results[results.size() - 2].text, QString("Music. Now"));
  }

  void restoresPunctuationForOtherRecognizers() {
    RecognizerSettings settings;
    settings.punctuationModel = neuralData("punctuation.onnx");
    settings.punctuationVocabulary = neuralData("punctuation.vocab");
    PunctuationHelper helper(helperProgram(), settings);
    QCOMPARE(helper.restored("turn off the music"), QString("Turn. Off. The. Music."));
    QCOMPARE(helper.restored(""), QString());
    QCOMPARE(helper.restored("six"), QString("Six."));
  }

  void failedPunctuationKeepsTheWords() {
    RecognizerSettings settings;
    settings.punctuationModel = neuralData("joiner.int8.onnx");
    settings.punctuationVocabulary = neuralData("punctuation.vocab");
    PunctuationHelper helper(helperProgram(), settings);
    QCOMPARE(helper.restored("turn off"), QString("turn off"));
    QCOMPARE(helper.restored("the music"), QString("the music"));
  }

  void cancelInterruptsPunctuation() {
    PunctuationHelper helper(silentProgram(), transducer());
    QString text;
    std::thread restoring([&] { text = helper.restored("as it was"); });
    helper.cancel();
    restoring.join();
    QCOMPARE(text, QString("as it was"));
  }

  void recognizesWithDamagedPunctuationModel() {
    RecognizerSettings settings = transducer();
    settings.punctuationModel = neuralData("joiner.int8.onnx");
    settings.punctuationVocabulary = neuralData("punctuation.vocab");
    QCOMPARE(finalsOf(settings, music_), QStringList("Turn off the music now"));
  }
};

QTEST_GUILESS_MAIN(NeuralBackendTest)
#include "neural_backend_test.moc"
