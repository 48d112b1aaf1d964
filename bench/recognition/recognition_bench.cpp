// SPDX-License-Identifier: GPL-3.0-or-later
// Measures recognition of speech and of noise. Without a folder: the built-in recognizer on read
// books, synthetic voices, the same with noise, and sounds without speech. With a folder of clips
// (see readClips and readStyles): word errors on these clips, by style and in total; with
// --downloaded, of the downloaded recognizer instead of the built-in one. With --words, a file of
// names and terms, one a line, they are the user's list; --names measures our sentences with names.
#include "platform/foundation/system_clock.h"
#include "platform/models/store/download_store.h"
#include "platform/speech/built_in/built_in_recognizer_provider.h"
#include "platform/speech/neural/neural_recognizer_provider.h"
#include "recognition/clip_styles.h"
#include "recognition/clips.h"
#include "recognition/listed_words.h"
#include "recognition/process_family.h"
#include "recognition/recognition_run.h"

#include <algorithm>
#include <cstdio>
#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
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

/// One row: the percentage, and of how many words it is.
void row(const QString& name, const WordErrors& words) {
  std::printf("%s %.3f %% %d\n", qPrintable(name), words.percent(), words.words);
  std::fflush(stdout);
}

/// One line with the number of errors and the confidence interval, and the row.
void printErrors(const QString& name, const QString& style, std::span<const WordErrors> clips) {
  WordErrors sum;
  for (const WordErrors& each : clips) sum += each;
  const Interval interval = confidenceInterval(clips);
  std::printf("# %s: %d clips, %d words, %d errors, %.1f %% (95 %%: %.1f to %.1f)\n",
              qPrintable(style), static_cast<int>(clips.size()), sum.words, sum.errors,
              sum.percent(), interval.low, interval.high);
  row(name, sum);
}

void printStyles(const std::vector<ClipStyle>& styles, const std::vector<Clip>& clips,
                 const Outcome& outcome) {
  for (const ClipStyle& style : styles) {
    std::vector<WordErrors> errors;
    for (std::size_t i = 0; i < clips.size(); ++i) {
      if (style.clips.contains(clips[i].name)) errors.push_back(outcome.clipErrors[i]);
    }
    if (!errors.empty()) {
      printErrors(QStringLiteral("recognizer_wer_%1_percent").arg(style.name), style.name, errors);
    }
  }
  printErrors("recognizer_wer_percent", "all", outcome.clipErrors);
}

void printListedWords(const std::vector<Clip>& clips, const Outcome& outcome,
                      const QStringList& list) {
  if (list.isEmpty()) return;
  const ListedWords words = countListedWords(clips, outcome.clipTexts, list);
  std::printf("# listed words: %d of %d right, %d heard that were not said\n", words.right,
              words.spoken, words.falselyHeard);
  row("recognizer_listed_words_wrong_percent",
      WordErrors{words.spoken - words.right, words.spoken});
  row("recognizer_other_words_wer_percent", words.others);
}

QStringList readLines(const QString& path) {
  QFile file(path);
  if (!file.open(QFile::ReadOnly)) throw std::runtime_error(qPrintable(path));
  return QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
}

/// Our sentences with names.
void measureNames(RecognizerProvider& provider, bool isVerbose) {
  const QTemporaryDir folder;
  const std::vector<Clip> clips = synthesiseNames(folder.path());
  const Outcome outcome = recognise(provider, kLocale, clips, Pace::asFastAsPossible, isVerbose);
  printErrors("recognizer_wer_names_percent", "names", outcome.clipErrors);
  printListedWords(clips, outcome, namesAndTerms());
}

struct FolderOptions {
  QString folder;
  QString locale;
  bool isRealTime = false;
  QStringList listed;  ///< names and terms that are counted
  QString model;       ///< the id of an installed model; empty for the first one of the locale
};

void measureFolder(RecognizerProvider& provider, const FolderOptions& options) {
  const std::vector<Clip> clips = readClips(options.folder);
  if (clips.empty()) throw std::runtime_error("the transcription lists no clips");
  const Pace pace = options.isRealTime ? Pace::realTime : Pace::asFastAsPossible;
  const Outcome outcome = recognise(provider, options.locale, clips, pace, true);
  printStyles(readStyles(options.folder), clips, outcome);
  printListedWords(clips, outcome, options.listed);
  row("recognizer_real_time_factor", outcome.cpuSeconds / outcome.audioSeconds, "x");
  if (options.isRealTime) printRealTime(outcome);
}

/// The whole catalogue, or that of one model and what it needs.
ModelCatalogue catalogueOf(const QString& id) {
  const ModelCatalogue all = ModelCatalogue::builtIn();
  if (id.isEmpty()) return all;
  std::vector<Model> models = all.ofKind(ModelKind::punctuation);
  const Model* model = all.find(id);
  if (!model || model->kind != ModelKind::recognition) {
    throw std::runtime_error("there is no such recognition model: " + id.toStdString());
  }
  models.push_back(*model);
  return ModelCatalogue(models);
}

void measureDownloaded(FolderOptions options, bool isLocaleSet) {
  SystemClock clock;
  const ModelCatalogue catalogue = catalogueOf(options.model);
  ModelStoreOptions storeOptions;
  storeOptions.root = DownloadStore::standardRoot();
  // Reports a metered connection, so that nothing is downloaded in the background.
  DownloadStore models(catalogue, storeOptions, clock, [] { return true; });
  NeuralRecognizerProvider provider(
      catalogue, models, QCoreApplication::applicationDirPath() + "/../bin/velun-recognizer");
  if (!options.model.isEmpty() && !isLocaleSet) {
    options.locale = provider.supportedLocales().value(0);
  }
  if (!provider.isInstalled(options.locale)) {
    throw std::runtime_error("no such model is installed");
  }
  measureFolder(provider, options);
}

void measureAll(RecognizerProvider& provider, bool isVerbose) {
  const QTemporaryDir folder;
  const double residentBefore = residentMegabytes();
  const auto errors = [&](const std::vector<Clip>& clips) {
    return recognise(provider, kLocale, clips, Pace::asFastAsPossible, isVerbose).words;
  };
  std::vector<Clip> books = readClips(kBooks);
  std::vector<Clip> voices = synthesise(folder.path(), false);
  row("recognizer_wer_percent", errors(books));
  row("recognizer_wer_flite_clean_percent", errors(voices));
  row("recognizer_rss_kept_mb", residentMegabytes() - residentBefore, "MB");
  const std::vector<Clip> noisyVoices = synthesise(folder.path(), true);
  row("recognizer_wer_flite_noise_percent", errors(noisyVoices));
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
  QCommandLineParser parser;
  parser.addHelpOption();
  parser.addPositionalArgument("folder", "WAV files, their transcription and lists of styles",
                               "[folder]");
  parser.addOptions({{"downloaded", "Measure the recognizer that was downloaded."},
                     {"model", "The same, by the id of its model.", "id"},
                     {"locale", "The language of the clips.", "locale", kLocale},
                     {"real-time", "Play the clips in real time and measure the delays too."},
                     {"words", "Names and terms that the user has listed.", "file"},
                     {"without-words", "Count the names and terms, but do not tell them."},
                     {"names", "Measure sentences with names, with the list of them."},
                     {"verbose", "Print the words of each clip."}});
  parser.process(app);
  try {
    const QStringList listed = parser.isSet("names")   ? namesAndTerms()
                               : parser.isSet("words") ? readLines(parser.value("words"))
                                                       : QStringList();
    auto style = std::make_shared<CaptionStyle>();
    if (!parser.isSet("without-words")) style->userWords = listed.join(u'\n');
    BuiltInRecognizerProvider provider(
        BuiltInFiles::installed(QCoreApplication::applicationDirPath() + "/../bin"), nullptr,
        style);
    if (parser.isSet("names")) {
      measureNames(provider, parser.isSet("verbose"));
      return 0;
    }
    if (parser.positionalArguments().isEmpty()) {
      measureAll(provider, parser.isSet("verbose"));
      return 0;
    }
    const FolderOptions options{parser.positionalArguments().first(), parser.value("locale"),
                                parser.isSet("real-time"), listed, parser.value("model")};
    if (parser.isSet("downloaded") || parser.isSet("model"))
      measureDownloaded(options, parser.isSet("locale"));
    else
      measureFolder(provider, options);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
  return 0;
}
