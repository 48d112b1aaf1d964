// SPDX-License-Identifier: GPL-3.0-or-later
// Captions whose recognizer is changed again and again during speech, between two helper programs:
// how many words are lost, doubled or changed by that. Both have the same model, which starts a new
// stream for every phrase anyway, and recognizes every word of the phrase when nothing is changed:
// so only the changes can lose words.
#include "measure.h"
#include "platform/speech/local_speech_run.h"
#include "platform/speech/neural/neural_backend.h"
#include "platform/speech/neural_fixture.h"
#include "recognition/word_errors.h"
#include "support/manual_clock.h"

#include <chrono>
#include <cstdio>
#include <memory>
#include <QCoreApplication>
#include <QEventLoop>

using namespace velun;

namespace {

using namespace std::chrono_literals;
using test::operator+;

constexpr int kPhrases = 120;
constexpr std::size_t kPiece = kSpeechSampleRate / 50;

SpeechRecognizer recognizer(const QString& id) {
  return {id, id, []() -> std::unique_ptr<RecognizerBackend> {
            return std::make_unique<NeuralBackend>(test::helperProgram(), test::transducer());
          }};
}

/// A run that hears phrases as fast as it can decode them, on a clock that shows the time of the
/// audio.
class Captions {
 public:
  Captions() {
    QObject::connect(&run_, &SpeechRun::resultReady, [this](const TranscriptionResult& result) {
      if (result.isFinal) lines_ << result.text;
    });
    QObject::connect(&run_, &SpeechRun::noticedBriefly, [this] { ++changes_; });
    QObject::connect(&run_, &SpeechRun::ended, [this] { hasEnded_ = true; });
  }

  /// Wants the other recognizer in the middle of the phrase.
  void changeDuring(const std::vector<float>& phrase) {
    const auto middle = phrase.begin() + static_cast<std::ptrdiff_t>(phrase.size() / 2);
    hear({phrase.begin(), middle});
    std::swap(recognizers_[0], recognizers_[1]);
    run_.setRecognizers(recognizers_);
    hear(std::vector<float>(middle, phrase.end()) + test::silence(1.2));
  }

  void finish() {
    run_.finish();
    while (!hasEnded_) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }

  QString text() const { return lines_.join(u' '); }
  int changes() const { return changes_; }

 private:
  void hear(const std::vector<float>& samples) {
    for (std::size_t at = 0; at < samples.size(); at += kPiece) {
      const auto begin = samples.begin() + static_cast<std::ptrdiff_t>(at);
      const auto end =
          samples.begin() + static_cast<std::ptrdiff_t>(std::min(samples.size(), at + kPiece));
      input_->yield({{begin, end}});
      clock_.advance(20ms);
      while (input_->pendingSeconds() > 1 && !hasEnded_) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
      }
    }
  }

  test::ManualClock clock_;
  std::shared_ptr<SpeechInput> input_ = std::make_shared<SpeechInput>();
  std::vector<SpeechRecognizer> recognizers_ = {recognizer(QStringLiteral("first")),
                                                recognizer(QStringLiteral("second"))};
  QStringList lines_;
  int changes_ = 0;
  bool hasEnded_ = false;
  LocalSpeechRun run_{recognizers_, input_, clock_};
};

}  // namespace

int main(int argc, char** argv) {
  const QCoreApplication app(argc, argv);
  const std::vector<float> phrase = test::sound(QStringLiteral("h01.wav"));
  Captions captions;
  QStringList said;
  for (int i = 0; i < kPhrases; ++i) {
    said << QStringLiteral("Turn off the music now");
    captions.changeDuring(phrase);
  }
  captions.finish();
  const bench::WordErrors errors = bench::countWordErrors(said.join(u' '), captions.text());
  std::printf("# %d changes of the recognizer\n", captions.changes());
  std::printf("model_switch_lost_words %d words %d\n", errors.errors, errors.words);
  // A run without changes has proved nothing.
  return captions.changes() >= kPhrases / 4 ? 0 : 1;
}
