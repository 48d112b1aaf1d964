// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/models/model_server.h"
#include "platform/models/packed_bytes.h"
#include "platform/models/store/download_store.h"
#include "platform/speech/local_speech_platform.h"
#include "platform/speech/neural/decoding_speed.h"
#include "platform/speech/neural/neural_backend.h"
#include "platform/speech/neural/neural_recognizer_provider.h"
#include "platform/speech/neural_fixture.h"
#include "support/await.h"
#include "support/failure_of.h"
#include "support/manual_clock.h"
#include "support/suite.h"

#include <QJsonArray>
#include <QTemporaryDir>
#include <utility>
#include <vector>

using namespace velun;
using namespace velun::test;

/// From the catalogue through a download to recognized words. Only the server and the model are not
/// the real ones.
class NeuralEndToEndTest final : public test::Suite {
  Q_OBJECT

  QTemporaryDir dir_;
  ManualClock clock_;
  ModelServer server_;
  std::unique_ptr<DownloadStore> store_;
  /// Of the runs that have ended; added to by their decode threads.
  std::vector<std::pair<QString, double>> speeds_;
  std::unique_ptr<LocalSpeechPlatform> platform_;

  Model served(const QString& id, ModelKind kind, const QJsonObject& options,
               const QStringList& files) {
    Model model{id, kind, {"en"}, "MIT", 0, options, {}};
    for (const QString& name : files) {
      QFile file(neuralData(name));
      if (!file.open(QIODevice::ReadOnly)) qFatal("%s is missing", qPrintable(name));
      const QByteArray bytes = file.readAll();
      server_.files["/" + name] = bytes;
      model.installedBytes += bytes.size();
      model.downloads.push_back({{server_.address("/" + name)},
                                 bytes.size(),
                                 sha256(bytes),
                                 ModelPacking::none,
                                 {{name, bytes.size(), sha256(bytes)}}});
    }
    return model;
  }

  ModelCatalogue catalogue() {
    const QJsonObject recognition = {{"locales", QJsonArray{"en_US"}},
                                     {"modelType", "zipformer2"},
                                     {"letters", "fold"},
                                     {"punctuation", "none"},
                                     {"encoder", "zipformer2-encoder.int8.onnx"},
                                     {"decoder", "decoder.int8.onnx"},
                                     {"joiner", "joiner.int8.onnx"},
                                     {"tokens", "tokens-blank0.txt"}};
    const QJsonObject marks = {{"model", "punctuation.onnx"}, {"vocabulary", "punctuation.vocab"}};
    return ModelCatalogue({served("words", ModelKind::recognition, recognition,
                                  {"zipformer2-encoder.int8.onnx", "decoder.int8.onnx",
                                   "joiner.int8.onnx", "tokens-blank0.txt"}),
                           served("marks", ModelKind::punctuation, marks,
                                  {"punctuation.onnx", "punctuation.vocab"})});
  }

  /// The final results for a sound, or the failure.
  QStringList caption(const std::vector<float>& samples) {
    const auto input = std::make_shared<SpeechInput>();
    const std::unique_ptr<SpeechRun> run = platform_->start("en_US", input);
    QStringList finals;
    connect(run.get(), &SpeechRun::resultReady, this, [&finals](const TranscriptionResult& result) {
      if (result.isFinal) finals.append(result.text);
    });
    connect(run.get(), &SpeechRun::ended, this, [&finals](const std::optional<QString>& error) {
      if (error) finals.append(*error);
    });
    input->yield({samples});
    await(run->finish());
    return finals;
  }

 private Q_SLOTS:
  void initTestCase() {
    QVERIFY2(hasRecognitionLibrary(), "The recognition library is missing: run scripts/setup.");
  }

  void downloadsAndRecognizes() {
    const ModelCatalogue models = catalogue();
    ModelStoreOptions options;
    options.root = dir_.path();
    store_ = std::make_unique<DownloadStore>(models, options, clock_, [] { return false; });
    platform_ = std::make_unique<LocalSpeechPlatform>(
        LocalSpeechPlatform::Providers{std::make_shared<NeuralRecognizerProvider>(
            models, *store_, helperProgram(), std::make_shared<CaptionStyle>(),
            [this](const QString& id, double factor) {
              speeds_.push_back({id, factor});
            })},
        clock_);
    server_.answers = {{.status = 404}};
    const std::shared_ptr<SpeechModelOffer> offer = platform_->support("en_US")->offer;
    QVERIFY(offer);
    QVERIFY(failureOf(offer->install(std::stop_token())).contains("error 404"));
    QCOMPARE(failureOf(offer->install(std::stop_token())), QString());
    QVERIFY(!platform_->support("en_US")->offer);
    QTRY_VERIFY(store_->busy().isEmpty());
    QCOMPARE(caption(sound("h01.wav")).join(u' '), QString("Turn. Off. The. Music. Now."));
  }

  void namesOfTheUserAreHeardWhereTheySoundAlike() {
    std::vector<float> clip = sound("h11.wav");
    std::uint32_t state = 1;
    for (float& sample : clip) {
      state = state * 1664525U + 1013904223U;
      sample += 0.2F * (static_cast<float>(state >> 8) / (1 << 24) - 0.5F);
    }
    const auto captioned = [&clip](const QString& words) {
      RecognizerSettings settings = transducer();
      settings.userWords = words;
      NeuralBackend backend(helperProgram(), settings);
      backend.load();
      backend.acceptAudio(clip);
      backend.finalize();
      QStringList finals;
      for (const TranscriptionResult& each : backend.poll()) {
        if (each.isFinal) finals << each.text;
      }
      return finals.join(u' ');
    };
    QCOMPARE(captioned({}), QString("Five six nine se eight"));
    QCOMPARE(captioned("Dijkstra"), QString("Five six nine se eight"));
    QCOMPARE(captioned("Dijkstra\nFive Six Nine Ten Eight"), QString("Five six nine ten eight"));
  }

  void recognizersThatCannotUseNamesIgnoreThem() {
    for (RecognizerSettings settings : {nemoCtc(), zipformerCtc()}) {
      settings.userWords = "seven\neleven";
      NeuralBackend backend(helperProgram(), settings);
      backend.load();
      backend.acceptAudio(sound("sixseven.wav"));
      backend.finalize();
      const std::vector<TranscriptionResult> results = backend.poll();
      QVERIFY(!results.empty() && results.back().text.startsWith("Six"));
    }
  }

  void speedOfARunIsMeasured() {
    const auto input = std::make_shared<SpeechInput>();
    std::unique_ptr<SpeechRun> run = platform_->start("en_US", input);
    const std::vector<float> phrase = sound("h01.wav");
    double fed = 0;
    while (fed <= DecodingSpeed::kMinSeconds) {
      input->yield({phrase});
      fed += static_cast<double>(phrase.size()) / kSpeechSampleRate;
      await(run->settle());
    }
    await(run->finish());
    run.reset();
    QCOMPARE(speeds_.size(), std::size_t(1));
    QCOMPARE(speeds_[0].first, QString("words"));
    QVERIFY2(speeds_[0].second > 0.00001 && speeds_[0].second < 5,
             qPrintable(QString::number(speeds_[0].second)));
  }

  void cleanupTestCase() {
    platform_.reset();
    store_.reset();
  }
};

QTEST_GUILESS_MAIN(NeuralEndToEndTest)
#include "neural_end_to_end_test.moc"
