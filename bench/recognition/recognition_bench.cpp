// SPDX-License-Identifier: GPL-3.0-or-later
// Measures recognition of speech and of noise. Without arguments: the built-in recognizer on read
// books, synthetic voices, the same with noise, and sounds without speech. With a folder of WAV
// files and a transcript: the built-in recognizer on these clips, one row each. With a locale as
// the third argument: the neural recognizer that is installed for it.
#include "platform/foundation/system_clock.h"
#include "platform/models/store/download_store.h"
#include "platform/speech/built_in/built_in_recognizer_provider.h"
#include "platform/speech/neural/neural_recognizer_provider.h"
#include "recognition/clips.h"
#include "recognition/recognition_run.h"

#include <algorithm>
#include <cstdio>
#include <QCoreApplication>
#include <QTemporaryDir>

using namespace velun;
using namespace velun::bench;

namespace {

const auto kBooks = QStringLiteral("/usr/share/pocketsphinx/test/data/librivox");
const auto kLocale = QStringLiteral("en_US");

void row(const char* name, double value, const char* unit) {
  std::printf("%s %.3f %s\n", name, value, unit);
  std::fflush(stdout);
}

void printRealTime(const Outcome& outcome) {
  row("recognizer_core_use", outcome.cpuSeconds / outcome.audioSeconds, "cores");
  row("recognizer_first_draft_s", percentile(outcome.firstDraftDelays, 0.5), "s");
  row("recognizer_final_s", percentile(outcome.finalDelays, 0.5), "s");
  row("recognizer_final_p95_s", percentile(outcome.finalDelays, 0.95), "s");
  row("recognizer_draft_churn_percent",
      outcome.shownWords ? 100.0 * outcome.changedWords / outcome.shownWords : 0, "%");
  row("recognizer_rss_mb", outcome.residentMegabytes, "MB");
}

void measureClips(RecognizerProvider& provider, const QString& locale,
                  const std::vector<Clip>& clips) {
  const Outcome fast = recognise(provider, locale, clips, Pace::asFastAsPossible, true);
  row("recognizer_wer_percent", fast.words.percent(), "%");
  row("recognizer_real_time_factor", fast.cpuSeconds / fast.audioSeconds, "x");
  printRealTime(recognise(provider, locale, clips, Pace::realTime, true));
}

void measureNeural(const QString& locale, const std::vector<Clip>& clips) {
  SystemClock clock;
  ModelStoreOptions options;
  options.root = DownloadStore::standardRoot();
  // Reports a metered connection, so that nothing is downloaded in the background.
  DownloadStore models(ModelCatalogue::builtIn(), options, clock, [] { return true; });
  NeuralRecognizerProvider provider(
      ModelCatalogue::builtIn(), models,
      QCoreApplication::applicationDirPath() + "/../bin/velun-recognizer");
  if (!provider.isInstalled(locale)) throw std::runtime_error("no model is installed for it");
  measureClips(provider, locale, clips);
}

void measureAll(RecognizerProvider& provider, bool isVerbose) {
  const QTemporaryDir folder;
  const double residentBefore = residentMegabytes();
  const auto percent = [&](const std::vector<Clip>& clips) {
    return recognise(provider, kLocale, clips, Pace::asFastAsPossible, isVerbose).words.percent();
  };
  std::vector<Clip> books = readClips(kBooks, kBooks + "/transcription");
  std::vector<Clip> voices = synthesise(folder.path(), false);
  row("recognizer_wer_percent", percent(books), "%");
  row("recognizer_wer_flite_clean_percent", percent(voices), "%");
  row("recognizer_rss_kept_mb", residentMegabytes() - residentBefore, "MB");
  const std::vector<Clip> noisyVoices = synthesise(folder.path(), true);
  row("recognizer_wer_flite_noise_percent", percent(noisyVoices), "%");
  // In real time, where final passes that are started and cancelled cost more.
  const std::vector<Clip> noises = soundsWithoutSpeech(folder.path());
  const Outcome noise = recognise(provider, kLocale, noises, Pace::realTime, isVerbose);
  row("recognizer_false_words_per_min", 60.0 * noise.recognizedWords / noise.audioSeconds,
      "words/min");
  const std::vector<Clip> someNoisyVoices(noisyVoices.begin(), noisyVoices.begin() + 8);
  const Outcome noisy = recognise(provider, kLocale, someNoisyVoices, Pace::realTime, isVerbose);
  row("recognizer_noise_core_use", std::max(noise.mostCores, noisy.mostCores), "cores");
  for (std::size_t i = 0; i < voices.size(); i += 4) books.push_back(voices[i]);
  printRealTime(recognise(provider, kLocale, books, Pace::realTime, false));
}

}  // namespace

int main(int argc, char** argv) {
  QCoreApplication app(argc, argv);
  const QStringList arguments = QCoreApplication::arguments();
  BuiltInRecognizerProvider provider;
  try {
    if (arguments.size() == 3) {
      measureClips(provider, kLocale, readClips(arguments[1], arguments[2]));
    } else if (arguments.size() == 4) {
      measureNeural(arguments[3], readClips(arguments[1], arguments[2]));
    } else {
      measureAll(provider, arguments.contains("--verbose"));
    }
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
  return 0;
}
