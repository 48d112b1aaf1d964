// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/neural/english_backend.h"

#include "support/suite.h"

#include <utility>

using namespace velun;

namespace {

/// Gives the results that the test put into it.
struct GivenResults final : RecognizerBackend {
  void acceptAudio(std::span<const float>) override {}
  std::vector<TranscriptionResult> poll() override { return std::exchange(results, {}); }
  void finalize() override {}
  void cancel() override {}
  std::optional<QString> notice() const override { return "slow"; }
  bool expectsResults() const override { return true; }

  std::vector<TranscriptionResult> results;
};

}  // namespace

class EnglishBackendTest final : public test::Suite {
  Q_OBJECT

  std::shared_ptr<CaptionStyle> style_;
  GivenResults* recognizer_ = nullptr;
  std::unique_ptr<EnglishBackend> backend_;

  QStringList written(std::vector<TranscriptionResult> results) {
    recognizer_->results = std::move(results);
    QStringList texts;
    for (const TranscriptionResult& each : backend_->poll()) {
      texts.append(each.isFinal ? each.text : u'~' + each.text);
    }
    return texts;
  }

 private Q_SLOTS:
  void init() {
    Suite::init();
    style_ = std::make_shared<CaptionStyle>();
    auto recognizer = std::make_unique<GivenResults>();
    recognizer_ = recognizer.get();
    backend_ = std::make_unique<EnglishBackend>(std::move(recognizer), style_);
  }

  void draftsAndFinalsAreWritten() {
    QCOMPARE(written({{"It costs twenty", false},
                      {"It costs twenty dollars or more", false},
                      {"It costs twenty dollars or more.", true}}),
             QStringList({"~It costs twenty", "~It costs $20 or more", "It costs $20 or more."}));
  }

  void draftThatIsWrittenTheSameIsNotRepeated() {
    QCOMPARE(written({{"so [unk]", false}, {"so", false}}), QStringList("~so"));
    QCOMPARE(written({{"so", true}, {"so", false}}), QStringList({"so", "~so"}));
  }

  void aChangeOfTheStyleAppliesFromTheNextResult() {
    QCOMPARE(written({{"Twelve percent.", true}}), QStringList("12%."));
    style_->numbersAsDigits = false;
    QCOMPARE(written({{"Twelve percent.", true}}), QStringList("Twelve percent."));
  }

  void finalWithoutTextDiscardsTheDraft() { QCOMPARE(written({{"", true}}), QStringList("")); }

  void theRecognizerAnswersEverythingElse() {
    QCOMPARE(backend_->notice(), std::optional<QString>("slow"));
    QVERIFY(backend_->expectsResults());
  }
};

QTEST_GUILESS_MAIN(EnglishBackendTest)
#include "english_backend_test.moc"
