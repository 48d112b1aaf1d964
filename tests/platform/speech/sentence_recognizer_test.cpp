// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/sentence_recognizer.h"

#include "platform/speech/helper/streaming_recognizer.h"
#include "platform/speech/neural_fixture.h"
#include "platform/speech/scripted_sherpa.h"
#include "support/suite.h"

#include <random>

using namespace velun;
using namespace velun::test;

namespace {

RecognizerSettings punctuated() {
  RecognizerSettings settings = transducer();
  settings.writesMarks = true;
  settings.endpointSilence = 1.0;
  settings.tailSilenceMs = 1000;
  return settings;
}

RecognizerSettings keepingContext() {
  RecognizerSettings settings = punctuated();
  settings.keepsContext = true;
  settings.leadSilenceMs = 500;
  return settings;
}

std::vector<float> quiet(double seconds) {
  return std::vector<float>(static_cast<std::size_t>(seconds * 16000), 0.0F);
}

/// Noise in bursts, as loud as speech.
std::vector<float> loud(double seconds) {
  std::vector<float> samples = quiet(seconds);
  std::mt19937 random(1);
  std::uniform_real_distribution<float> level(-0.3F, 0.3F);
  for (std::size_t i = 0; i < samples.size(); ++i) {
    if (i / 1600 % 4 != 3) samples[i] = level(random);
  }
  return samples;
}

struct Heard {
  QStringList finals;
  QString draft;  ///< the last one
};

void take(StreamRecognizer& recognizer, Heard& heard) {
  for (const TranscriptionResult& result : recognizer.takeResults()) {
    if (result.isFinal) heard.finals.append(result.text);
    heard.draft = result.isFinal ? QString() : result.text;
  }
}

Heard hear(StreamRecognizer& recognizer, const std::vector<float>& samples) {
  Heard heard;
  recognizer.accept(samples);
  take(recognizer, heard);
  return heard;
}

}  // namespace

/// Where recognizers end lines, with a scripted model.
class SentenceRecognizerTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void linesEndWithSentences() {
    ScriptedSherpa sherpa({{{" Hello", 0.6},
                            {" there", 0.9},
                            {".", 1.1},
                            {" How", 1.4},
                            {" are", 1.7},
                            {" you", 2.0}}});
    SentenceRecognizer recognizer(sherpa.library(), keepingContext(), nullptr);
    Heard heard = hear(recognizer, loud(1.0));
    QCOMPARE(heard.finals, QStringList());
    QCOMPARE(heard.draft, QString("Hello there."));
    heard = hear(recognizer, loud(1.5));
    QCOMPARE(heard.finals, QStringList("Hello there."));
    QCOMPARE(heard.draft, QString("How are you"));
    QCOMPARE(sherpa.createdStreams(), std::size_t(1));
    QCOMPARE(sherpa.resets(), 0);
  }

  void abbreviationsEndNoSentence() {
    ScriptedSherpa sherpa(
        {{{" Dr", 0.6}, {".", 0.8}, {" Smith", 1.1}, {" is", 1.4}, {" here", 1.7}}});
    SentenceRecognizer recognizer(sherpa.library(), keepingContext(), nullptr);
    const Heard heard = hear(recognizer, loud(2.4));
    QCOMPARE(heard.finals, QStringList());
    QCOMPARE(heard.draft, QString("Dr. Smith is here"));
  }

  void numbersEndNoSentence() {
    ScriptedSherpa sherpa(
        {{{" about", 0.6}, {" 3", 0.8}, {".", 1.0}, {"5", 1.1}, {" of", 1.4}, {" them", 1.7}}});
    SentenceRecognizer recognizer(sherpa.library(), keepingContext(), nullptr);
    const Heard heard = hear(recognizer, loud(2.4));
    QCOMPARE(heard.finals, QStringList());
    QCOMPARE(heard.draft, QString("About 3.5 of them"));
  }

  void sentencesWithoutBlanksEndToo() {
    ScriptedSherpa sherpa({{{"你好", 0.6}, {"。", 0.9}, {"今天天气", 1.4}, {"很好", 1.7}}});
    SentenceRecognizer recognizer(sherpa.library(), keepingContext(), nullptr);
    const Heard heard = hear(recognizer, loud(2.4));
    QCOMPARE(heard.finals, QStringList("你好。"));
    QCOMPARE(heard.draft, QString("今天天气很好"));
  }

  void pauseEndsALineWithoutRestart() {
    ScriptedSherpa sherpa({{{" well", 0.6}, {".", 2.2}, {" Next", 2.6}}});
    SentenceRecognizer recognizer(sherpa.library(), keepingContext(), nullptr);
    Heard heard = hear(recognizer, loud(0.6) + quiet(1.0));
    QCOMPARE(heard.finals, QStringList("Well"));
    // The full stop that comes late belongs to the line before.
    heard = hear(recognizer, loud(1.4));
    QCOMPARE(heard.finals, QStringList());
    QCOMPARE(heard.draft, QString("Next"));
    QCOMPARE(sherpa.createdStreams(), std::size_t(1));
  }

  void longSilenceRestartsTheModel() {
    ScriptedSherpa sherpa({{{" first", 0.6}, {".", 0.8}}, {{" Second", 0.9}, {".", 1.1}}});
    SentenceRecognizer recognizer(sherpa.library(), keepingContext(), nullptr);
    QCOMPARE(sherpa.fedSeconds(), 0.5);
    const Heard heard = hear(recognizer, loud(0.6) + quiet(3.2));
    QCOMPARE(heard.finals, QStringList("First."));
    QCOMPARE(sherpa.createdStreams(), std::size_t(2));
    QVERIFY(sherpa.fedSeconds() >= 0.5 && sherpa.fedSeconds() < 2);
    QCOMPARE(hear(recognizer, loud(1) + quiet(1.4)).finals, QStringList("Second."));
    // Nothing was heard since: no need to restart again.
    hear(recognizer, quiet(20));
    QCOMPARE(sherpa.createdStreams(), std::size_t(3));
    hear(recognizer, quiet(20));
    QCOMPARE(sherpa.createdStreams(), std::size_t(3));
  }

  void soundWithoutWordsIsNoSilence() {
    ScriptedSherpa sherpa({{{" first", 0.6}, {".", 0.8}}});
    SentenceRecognizer recognizer(sherpa.library(), keepingContext(), nullptr);
    QCOMPARE(hear(recognizer, loud(8)).finals, QStringList("First."));
    QCOMPARE(sherpa.createdStreams(), std::size_t(1));
  }

  void speechWithoutMarksIsCutBetweenWords() {
    ScriptedStream words;
    for (int i = 0; i < 200; ++i) {
      const double begin = 0.6 + 0.4 * i;
      words.push_back({" wo", begin});
      words.push_back({"rd", begin + 0.1});
    }
    ScriptedSherpa sherpa({words});
    SentenceRecognizer recognizer(sherpa.library(), keepingContext(), nullptr);
    const Heard heard = hear(recognizer, loud(60));
    QVERIFY(heard.finals.size() >= 2);
    for (const QString& line : heard.finals) {
      const QStringList all = line.toLower().split(' ');
      QVERIFY2(all.size() <= 40 && all.count("word") == all.size(), qPrintable(line));
    }
    QCOMPARE(sherpa.createdStreams(), std::size_t(1));
  }

  void endOfTheAudioDeliversTheRest() {
    ScriptedSherpa sherpa({{{" Hello", 0.6}, {" there", 0.9}, {".", 1.9}}});
    SentenceRecognizer recognizer(sherpa.library(), keepingContext(), nullptr);
    Heard heard = hear(recognizer, loud(1));
    recognizer.finalize();
    take(recognizer, heard);
    QCOMPARE(heard.finals, QStringList("Hello there."));
    QVERIFY(!recognizer.isInPhrase());
  }

  void lateFullStopEndsItsOwnLine() {
    // It comes more than a second after the last word, when the phrase has ended for sherpa-onnx.
    ScriptedSherpa sherpa({{{" Hello", 0.6}, {".", 2.5}}, {{".", 0.3}, {" Next", 0.6}}});
    StreamingRecognizer recognizer(sherpa.library(), punctuated(), nullptr);
    Heard heard;
    recognizer.accept(loud(0.6) + quiet(1.6) + loud(0.3));
    take(recognizer, heard);
    QCOMPARE(heard.finals, QStringList("Hello."));
    QCOMPARE(heard.draft, QString("Next"));
    QCOMPARE(sherpa.createdStreams(), std::size_t(2));
  }

  void fullStopDoesNotProlongTheSilence() {
    // For sherpa-onnx, the silence begins with the full stop: it would be over after 2.6 s.
    ScriptedSherpa sherpa({{{" Hello", 0.6}, {".", 1.6}}});
    StreamingRecognizer recognizer(sherpa.library(), punctuated(), nullptr);
    QCOMPARE(hear(recognizer, loud(0.6) + quiet(1.6)).finals, QStringList("Hello."));
  }

  void modelsWithoutMarksAreNotFedMore() {
    RecognizerSettings settings = punctuated();
    settings.writesMarks = false;
    ScriptedSherpa sherpa({{{" hello", 0.6}, {".", 2.5}}});
    StreamingRecognizer recognizer(sherpa.library(), settings, nullptr);
    QCOMPARE(hear(recognizer, loud(0.6) + quiet(1.6)).finals, QStringList("Hello"));
  }

  void olderLibraryIsRefused() {
    const ScriptedSherpa sherpa({});
    sherpa::requireVersion(sherpa.library(), "");
    sherpa::requireVersion(sherpa.library(), "1.13.5");
    sherpa::requireVersion(sherpa.library(), "1.13.8");
    try {
      sherpa::requireVersion(sherpa.library(), "1.13.10");
      QFAIL("it was accepted");
    } catch (const std::runtime_error& error) {
      QCOMPARE(QString(error.what()),
               QString("the model needs sherpa-onnx 1.13.10 or newer, but 1.13.8 is installed"));
    }
  }
};

QTEST_GUILESS_MAIN(SentenceRecognizerTest)
#include "sentence_recognizer_test.moc"
