// SPDX-License-Identifier: GPL-3.0-or-later
// How long the built-in recognizer's words of a phrase take to become sentences: the model in the
// helper program, the messages to it and back, marks, capitals and numbers.
#include "measure.h"
#include "platform/speech/built_in/built_in_punctuation.h"
#include "platform/speech/built_in/sentence_writer.h"

#include <algorithm>
#include <QCoreApplication>
#include <QStringList>

using namespace velun;

namespace {

/// 12 to 27 words; "+" is a pause.
const QStringList kPhrases = {
    "and so my fellow americans + ask not what your country can do for you",
    "good morning and welcome to the first lesson of the year + today we will talk about the river "
    "and the people who live beside it",
    "i think we should wait until tomorrow because the train from new york is always late on "
    "mondays",
    "what do you think + can we do this next week or would you like to start with it right away",
};
constexpr int kRuns = 400;

/// The words of a phrase that begins at `begin`, which becomes its end.
TranscriptionResult heard(const QString& phrase, double& begin) {
  TranscriptionResult result{phrase, true};
  for (const QString& word : phrase.split(u' ')) {
    const bool isPause = word == QLatin1String("+");
    if (!isPause) result.words.push_back({word, begin, begin + 0.3, 1});
    begin += isPause ? 0.7 : 0.3;
  }
  return result;
}

}  // namespace

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  const QString programs = QCoreApplication::applicationDirPath() + "/../bin";
  const BuiltInPunctuation provider(programs + "/velun-recognizer",
                                    BuiltInPunctuation::installedFolder(programs));
  const PunctuationRestorer::Factory factory = provider.punctuationFactory("en_US");
  if (!factory) {
    std::fputs("The punctuation model is missing\n", stderr);
    return 1;
  }
  SentenceWriter writer(factory());
  writer.load();
  std::vector<double> times;
  double end = 0;
  for (int i = 0; i < kRuns; ++i) {
    end += 1;
    const TranscriptionResult phrase = heard(kPhrases[i % kPhrases.size()], end);
    times.push_back(bench::millisecondsOf([&] { writer.write(phrase); }));
  }
  std::sort(times.begin(), times.end());
  bench::report("punctuation_ms", times[kRuns / 2], "ms");
  bench::report("punctuation_p95_ms", times[kRuns * 95 / 100], "ms");
  return 0;
}
