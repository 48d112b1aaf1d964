// SPDX-License-Identifier: GPL-3.0-or-later
// Captions whose recognizer is changed again and again during speech, between helper programs of
// every kind: how many words are lost, doubled or changed by that. Each of the recognizers writes
// every word of the phrase when nothing is changed: so only the changes can lose words.
#include "measure.h"
#include "platform/speech/built_in_fixture.h"
#include "platform/speech/local_speech_run.h"
#include "platform/speech/neural/neural_backend.h"
#include "platform/speech/neural_fixture.h"
#include "recognition/word_errors.h"
#include "support/installed_recognizer.h"
#include "support/manual_clock.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <memory>
#include <QCoreApplication>
#include <QEventLoop>
#include <thread>

using namespace velun;

namespace {

using namespace std::chrono_literals;
using test::operator+;

constexpr int kPhrases = 120;
constexpr std::size_t kPiece = kSpeechSampleRate / 50;
const QString kSaid = QStringLiteral("Turn off the music now");

SpeechRecognizer recognizer(const QString& id, const RecognizerSettings& settings) {
  return {id, id, [settings]() -> std::unique_ptr<RecognizerBackend> {
            return std::make_unique<NeuralBackend>(test::helperProgram(), settings);
          }};
}

SpeechRecognizer builtIn() {
  return {"built-in", "built-in",
          test::installedRecognizer(BuiltInRecognizerProvider(test::builtInFiles()), "en_US")};
}

/// In an order in which each change is one of kind. The NeMo transducer keeps its context over
/// phrases; the others start anew.
std::vector<SpeechRecognizer> allKinds() {
  return {recognizer("transducer", test::transducer()), recognizer("NeMo CTC", test::nemoCtc()),
          builtIn(), recognizer("NeMo transducer", test::nemoTransducer()),
          recognizer("zipformer CTC", test::zipformerCtc())};
}

/// A run that hears phrases five times as fast as they are spoken, so that most recognizers are
/// loaded in the phrase in which they are wanted; on a clock that shows the time of the audio.
class Captions {
 public:
  explicit Captions(std::vector<SpeechRecognizer> recognizers)
      : recognizers_(std::move(recognizers)), run_(recognizers_, input_, clock_) {
    QObject::connect(&run_, &SpeechRun::resultReady, [this](const TranscriptionResult& result) {
      if (result.isFinal) lines_ << result.text;
    });
    QObject::connect(&run_, &SpeechRun::noticedBriefly, [this] { ++changes_; });
    QObject::connect(&run_, &SpeechRun::ended, [this] { hasEnded_ = true; });
  }

  /// Wants the next recognizer in the middle of the phrase, unless the last one is still loading.
  void changeDuring(const std::vector<float>& phrase) {
    const auto middle = phrase.begin() + static_cast<std::ptrdiff_t>(phrase.size() / 2);
    hear({phrase.begin(), middle});
    if (changes_ == wanted_) {
      ++wanted_;
      std::ranges::rotate(recognizers_, recognizers_.begin() + 1);
      run_.setRecognizers(recognizers_);
    }
    hear(std::vector<float>(middle, phrase.end()) + test::silence(1.2));
  }

  void hear(const std::vector<float>& samples) {
    for (std::size_t at = 0; at < samples.size(); at += kPiece) {
      const auto begin = samples.begin() + static_cast<std::ptrdiff_t>(at);
      const auto end =
          samples.begin() + static_cast<std::ptrdiff_t>(std::min(samples.size(), at + kPiece));
      input_->yield({{begin, end}});
      clock_.advance(20ms);
      std::this_thread::sleep_for(4ms);
      QCoreApplication::processEvents();
      while (input_->pendingSeconds() > 1 && !hasEnded_) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
      }
    }
  }

  void finish() {
    run_.finish();
    while (!hasEnded_) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }

  QString text() const { return lines_.join(u' '); }
  int changes() const { return changes_; }

 private:
  test::ManualClock clock_;
  std::shared_ptr<SpeechInput> input_ = std::make_shared<SpeechInput>();
  std::vector<SpeechRecognizer> recognizers_;
  QStringList lines_;
  int wanted_ = 0;
  int changes_ = 0;
  bool hasEnded_ = false;
  LocalSpeechRun run_;
};

/// Whether each recognizer alone writes the phrase without an error.
bool areAllRight(const std::vector<float>& phrase) {
  bool areRight = true;
  for (const SpeechRecognizer& each : allKinds()) {
    Captions captions({each});
    for (int i = 0; i < 2; ++i) captions.hear(phrase + test::silence(1.2));
    captions.finish();
    const QString said = kSaid + u' ' + kSaid;
    if (bench::countWordErrors(said, captions.text()).errors == 0) continue;
    std::fprintf(stderr, "%s alone writes “%s”\n", qPrintable(each.id),
                 qPrintable(captions.text()));
    areRight = false;
  }
  return areRight;
}

}  // namespace

int main(int argc, char** argv) {
  const QCoreApplication app(argc, argv);
  const std::vector<float> phrase = test::sound(QStringLiteral("h01.wav"));
  if (!areAllRight(phrase)) return 1;
  Captions captions(allKinds());
  QStringList said;
  for (int i = 0; i < kPhrases; ++i) {
    said << kSaid;
    captions.changeDuring(phrase);
  }
  captions.finish();
  const bench::WordErrors errors = bench::countWordErrors(said.join(u' '), captions.text());
  std::printf("# %d changes of the recognizer\n", captions.changes());
  std::printf("model_switch_lost_words %d words %d\n", errors.errors, errors.words);
  // A run without changes has proved nothing.
  return captions.changes() >= kPhrases / 4 ? 0 : 1;
}
