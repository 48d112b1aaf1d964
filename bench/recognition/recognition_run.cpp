// SPDX-License-Identifier: GPL-3.0-or-later
#include "recognition/recognition_run.h"

#include "audio/audio_feeder.h"
#include "platform/foundation/system_clock.h"
#include "platform/speech/local_speech_run.h"
#include "recognition/process_family.h"
#include "support/installed_recognizer.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>
#include <stdexcept>

namespace velun::bench {

namespace {

constexpr double kPauseAfterClip = 2.0;
constexpr double kPiece = 0.02;

/// One speech run, its results with the time of their arrival.
class Run {
 public:
  struct Arrival {
    TranscriptionResult result;
    double at;
  };

  Run(RecognizerProvider& provider, const QString& locale)
      : input_(std::make_shared<SpeechInput>()),
        feeder_(input_, clock_),
        run_(std::vector<SpeechRecognizer>{{"measured", "Measured",
                                            test::installedRecognizer(provider, locale)}},
             input_, clock_) {
    QObject::connect(&run_, &SpeechRun::resultReady, [this](const TranscriptionResult& result) {
      arrivals.push_back({result, clock_.monotonicSeconds()});
    });
    QObject::connect(&run_, &SpeechRun::ended, [this](const std::optional<QString>& error) {
      if (error) std::fprintf(stderr, "%s\n", qUtf8Printable(*error));
      ended_ = true;
      loop_.quit();
    });
  }

  void feed(std::span<const float> samples) {
    feeder_.feed(samples);
    QCoreApplication::processEvents();
  }

  void waitUntil(double time) {
    while (clock_.monotonicSeconds() < time) {
      QEventLoop loop;
      const double left = time - clock_.monotonicSeconds();
      QTimer::singleShot(std::max(0, static_cast<int>(left * 1000)), Qt::PreciseTimer, &loop,
                         &QEventLoop::quit);
      loop.exec();
    }
  }

  /// Keeps the queue short, so that the measured memory is the recognizer's and not that of queued
  /// audio.
  void catchUp() {
    while (input_->pendingSeconds() > 1 && !ended_) waitUntil(now() + 0.002);
    if (ended_) throw std::runtime_error("the recognizer has ended");
  }

  /// Waits until everything fed so far is settled, and the decoders are loaded.
  void settle() {
    QEventLoop loop;
    settleThen(&loop);
    loop.exec();
  }

  void finish() {
    run_.finish();
    if (!ended_) loop_.exec();
  }

  double now() const { return clock_.monotonicSeconds(); }

  std::vector<Arrival> arrivals;

 private:
  QCoro::Task<> settleThen(QEventLoop* loop) {
    QCoro::Task<> settling = run_.settle();
    co_await settling;
    loop->quit();
  }

  SystemClock clock_;
  std::shared_ptr<SpeechInput> input_;
  AudioFeeder feeder_;
  QEventLoop loop_;
  bool ended_ = false;
  LocalSpeechRun run_;
};

/// Plays one sound. Returns the time of its start.
double play(Run& run, const Sound& sound, Pace pace) {
  const double begin = run.now();
  const auto piece = static_cast<std::size_t>(sound.sampleRate * kPiece);
  std::vector<float> samples = sound.samples;
  samples.resize(samples.size() + static_cast<std::size_t>(kPauseAfterClip * sound.sampleRate));
  for (std::size_t i = 0; i < samples.size(); i += piece) {
    const std::size_t length = std::min(piece, samples.size() - i);
    if (pace == Pace::realTime) {
      run.waitUntil(begin + static_cast<double>(i + length) / sound.sampleRate);
    } else {
      run.catchUp();
    }
    run.feed(std::span<const float>(samples).subspan(i, length));
  }
  return begin;
}

void countDrafts(const std::vector<Run::Arrival>& arrivals, Outcome& outcome) {
  QStringList shown;
  for (const Run::Arrival& arrival : arrivals) {
    const QStringList words = comparedWords(arrival.result.text);
    if (!arrival.result.isFinal) {
      outcome.shownWords += static_cast<int>(std::max<qsizetype>(words.size() - shown.size(), 0));
      outcome.changedWords += changedWords(shown, words);
    }
    shown = arrival.result.isFinal ? QStringList() : words;
  }
}

/// The delays of the last counted clip.
void printDelays(const QString& name, const Outcome& outcome) {
  if (outcome.firstDraftDelays.empty() || outcome.finalDelays.empty()) return;
  std::printf("# %s: first draft after %.2f s, final after %.2f s\n", qUtf8Printable(name),
              outcome.firstDraftDelays.back(), outcome.finalDelays.back());
}

void countDelays(const std::vector<Run::Arrival>& arrivals, double begin, const Sound& sound,
                 Outcome& outcome) {
  const SpeechSpan speech = speechIn(sound);
  const auto isDraft = [](const Run::Arrival& each) {
    return !each.result.isFinal;
  };
  const auto draft = std::find_if(arrivals.begin(), arrivals.end(), isDraft);
  if (draft != arrivals.end()) {
    outcome.firstDraftDelays.push_back(draft->at - begin - speech.begin);
  }
  const auto final = std::find_if_not(arrivals.rbegin(), arrivals.rend(), isDraft);
  if (final != arrivals.rend()) outcome.finalDelays.push_back(final->at - begin - speech.end);
}

}  // namespace

Outcome recognise(RecognizerProvider& provider, const QString& locale,
                  const std::vector<Clip>& clips, Pace pace, bool isVerbose) {
  Outcome outcome;
  Run run(provider, locale);
  run.settle();
  const double cpuBegin = cpuSeconds();
  const double wallBegin = run.now();
  std::vector<std::pair<std::size_t, double>> begins;
  for (const Clip& clip : clips) {
    const double cpuBefore = cpuSeconds();
    const double seconds = clip.sound.seconds() + kPauseAfterClip;
    begins.emplace_back(run.arrivals.size(), 0);
    begins.back().second = play(run, clip.sound, pace);
    outcome.audioSeconds += seconds;
    // The last words of a clip are waited for, so that they count for it; in real time they are
    // there, unless the machine has other things to do.
    run.settle();
    outcome.mostCores = std::max(outcome.mostCores, (cpuSeconds() - cpuBefore) / seconds);
  }
  outcome.residentMegabytes = residentMegabytes();
  run.finish();
  outcome.cpuSeconds = cpuSeconds() - cpuBegin;
  outcome.wallSeconds = run.now() - wallBegin;
  begins.emplace_back(run.arrivals.size(), 0);
  for (std::size_t i = 0; i < clips.size(); ++i) {
    const std::vector<Run::Arrival> arrivals(
        run.arrivals.begin() + static_cast<std::ptrdiff_t>(begins[i].first),
        run.arrivals.begin() + static_cast<std::ptrdiff_t>(begins[i + 1].first));
    QStringList finals;
    for (const Run::Arrival& each : arrivals) {
      if (each.result.isFinal) finals.append(each.result.text);
    }
    const QString text = finals.join(u' ');
    const WordErrors errors = countWordErrors(clips[i].text, text);
    outcome.words += errors;
    outcome.clipErrors.push_back(errors);
    outcome.clipTexts.append(text);
    outcome.recognizedWords += static_cast<int>(comparedWords(text).size());
    countDrafts(arrivals, outcome);
    if (isVerbose) {
      std::printf("# %s: %d of %d words wrong: %s\n", qUtf8Printable(clips[i].name), errors.errors,
                  errors.words, qUtf8Printable(text));
    }
    if (pace == Pace::realTime) {
      countDelays(arrivals, begins[i].second, clips[i].sound, outcome);
      if (isVerbose) printDelays(clips[i].name, outcome);
    }
  }
  return outcome;
}

double percentile(std::vector<double> values, double share) {
  if (values.empty()) return 0;
  std::sort(values.begin(), values.end());
  const auto index =
      static_cast<std::size_t>(std::lround(share * static_cast<double>(values.size() - 1)));
  return values[index];
}

}  // namespace velun::bench
