// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/models/model_server.h"
#include "platform/models/packed_bytes.h"
#include "platform/models/store/download_store.h"
#include "platform/speech/local_speech_platform.h"
#include "platform/speech/neural/neural_recognizer_provider.h"
#include "platform/speech/neural_fixture.h"
#include "platform/speech/vosk_archive.h"
#include "support/await.h"
#include "support/failure_of.h"
#include "support/manual_clock.h"
#include "support/suite.h"

#include <QJsonArray>
#include <QTemporaryDir>

using namespace velun;
using namespace velun::test;
using namespace std::chrono_literals;

namespace {

/// How a model is downloaded.
enum class Source {
  archive,       ///< one archive with its folder, and with files that nobody asked for
  files,         ///< its files one by one
  secondServer,  ///< the same; the first address of each has nothing
  lostArchive,   ///< the archive is gone; its files are elsewhere
};

/// The files of the tests by the role that they have for a model.
using Roles = QHash<QString, QString>;

const Roles kPunctuatedZipformer = {{"encoder", "zipformer2-encoder.int8.onnx"},
                                    {"decoder", "decoder.int8.onnx"},
                                    {"joiner", "joiner.int8.onnx"},
                                    {"tokens", "tokens-punctuated.txt"}};
const Roles kPlainZipformer = {{"encoder", "zipformer2-encoder.int8.onnx"},
                               {"decoder", "decoder.int8.onnx"},
                               {"joiner", "joiner.int8.onnx"},
                               {"tokens", "tokens-blank0.txt"}};
const Roles kNemo = {{"encoder", "nemo-encoder.int8.onnx"},
                     {"decoder", "nemo-decoder.int8.onnx"},
                     {"joiner", "nemo-joiner.int8.onnx"},
                     {"tokens", "tokens-nemo-punctuated.txt"}};
const Roles kNemoCtc = {{"nemoCtc", "nemo-ctc.int8.onnx"}, {"tokens", "tokens.txt"}};
const Roles kZipformerCtc = {{"ctc", "zipformer2-ctc.int8.onnx"}, {"tokens", "tokens-blank0.txt"}};

QByteArray contents(const QString& name) {
  QFile file(neuralData(name));
  if (!file.open(QIODevice::ReadOnly)) qFatal("%s is missing", qPrintable(name));
  return file.readAll();
}

}  // namespace

/// Every kind of model in the catalogue, at toy size: from its entry, whose downloads only are
/// replaced, through the download to words of the real sherpa-onnx.
class ModelKindsTest final : public test::Suite {
  Q_OBJECT

  ManualClock clock_;

  static Model entry(const QString& id, const Roles& roles) {
    static const ModelCatalogue builtIn = ModelCatalogue::builtIn();
    if (const Model* known = builtIn.find(id)) return *known;
    Model model{id, ModelKind::recognition, {"en"}, "MIT", 0, {}, {}};
    model.options["locales"] = QJsonArray{"en_US"};
    for (const QString& role : roles.keys()) model.options[role] = role + ".file";
    return model;
  }

  /// Replaces the downloads of the model.
  static void serve(Model& model, const Roles& roles, Source source, ModelServer& server) {
    model.downloads.clear();
    model.installedBytes = 0;
    std::vector<ModelFile> files;
    std::vector<ArchiveEntry> entries = {{"published/README.md", "read me", {}},
                                         {"published/test_wavs/0.wav", "RIFF", {}}};
    for (const QString& role : roles.keys()) {
      const QString name = model.options[role].toString();
      const QByteArray bytes = contents(roles[role]);
      server.files["/second/" + name] = bytes;
      if (source == Source::files) server.files["/first/" + name] = bytes;
      entries.push_back({"published/" + name, bytes, {}});
      files.push_back({name, bytes.size(), sha256(bytes), {server.address("/second/" + name)}});
      model.installedBytes += bytes.size();
    }
    if (source == Source::archive || source == Source::lostArchive) {
      const QByteArray archive = tarBzip2(entries);
      if (source == Source::archive) server.files["/first/published.tar.bz2"] = archive;
      model.downloads.push_back({{server.address("/first/published.tar.bz2")},
                                 archive.size(),
                                 sha256(archive),
                                 ModelPacking::archive,
                                 files});
      return;
    }
    for (const ModelFile& file : files) {
      model.downloads.push_back({{server.address("/first/" + file.name), file.addresses.first()},
                                 file.bytes,
                                 file.sha256,
                                 ModelPacking::none,
                                 {{file.name, file.bytes, file.sha256}}});
    }
  }

  static QString wordsOf(LocalSpeechPlatform& platform, const std::vector<float>& samples,
                         const QString& locale = "en_US") {
    const auto input = std::make_shared<SpeechInput>();
    const std::unique_ptr<SpeechRun> run = platform.start(locale, input);
    QStringList lines;
    connect(run.get(), &SpeechRun::resultReady, run.get(),
            [&lines](const TranscriptionResult& result) {
              if (result.isFinal && !result.text.isEmpty()) lines.append(result.text);
            });
    connect(run.get(), &SpeechRun::ended, run.get(), [&lines](const std::optional<QString>& error) {
      if (error) lines.append(*error);
    });
    input->yield({samples});
    await(run->finish());
    return lines.join(" | ");
  }

 private Q_SLOTS:
  void initTestCase() {
    QVERIFY2(hasRecognitionLibrary(), "The recognition library is missing: run scripts/setup.");
  }

  void recognizesWords_data() {
    QTest::addColumn<QString>("id");
    QTest::addColumn<Roles>("roles");
    QTest::addColumn<Source>("source");
    QTest::addColumn<QString>("words");
    const QString sentences = "Turn off the music now. | Start the water now. Please.";
    const QString words = "Turn off the music now | Start the water now please";
    QTest::newRow("zipformer2 with punctuation")
        << "x-asr-480ms-zh-en-2026-06-05" << kPunctuatedZipformer << Source::archive << sentences;
    QTest::newRow("zipformer2 without its archive")
        << "x-asr-480ms-zh-en-2026-06-05" << kPunctuatedZipformer << Source::lostArchive
        << sentences;
    QTest::newRow("multilingual NeMo transducer")
        << "nemotron-3.5-streaming-560ms-2026-06-11" << kNemo << Source::archive << sentences;
    QTest::newRow("zipformer2 with steps of 1280 ms")
        << "kroko-en-2025-08-06" << kPunctuatedZipformer << Source::files << sentences;
    QTest::newRow("zipformer2 of one case")
        << "zipformer-en-2023-06-26" << kPlainZipformer << Source::secondServer << words;
    QTest::newRow("NeMo CTC") << "nemo-ctc" << kNemoCtc << Source::files << words;
    QTest::newRow("zipformer2 CTC") << "zipformer2-ctc" << kZipformerCtc << Source::files << words;
  }
  void recognizesWords() {
    QFETCH(QString, id);
    QFETCH(Roles, roles);
    QFETCH(Source, source);
    const QTemporaryDir folder;
    ModelServer server;
    Model model = entry(id, roles);
    serve(model, roles, source, server);
    const ModelCatalogue catalogue({model});
    ModelStoreOptions options;
    options.root = folder.path();
    options.retries = {2000ms, 1ms, 2};
    DownloadStore store(catalogue, options, clock_, [] { return false; });
    LocalSpeechPlatform platform(
        {std::make_shared<NeuralRecognizerProvider>(catalogue, store, helperProgram())}, clock_);
    const std::shared_ptr<SpeechModelOffer> offer = platform.offer("en_US", id);
    QVERIFY(offer);
    QCOMPARE(failureOf(offer->install(std::stop_token())), QString());
    const std::vector<float> samples = sound("h01.wav") + std::vector<float>(19200, 0.0F) +
                                       sound("h08.wav") + std::vector<float>(19200, 0.0F);
    QTEST(wordsOf(platform, samples), "words");
  }

  void recognizesWordsWithVosk() {
    Model model = entry("vosk-small-ca-0.4", {});
    const QString name = model.options["archive"].toString();
    const QByteArray archive = voskArchive(helperProgram());
    const QTemporaryDir folder;
    ModelServer server;
    server.files["/" + name] = archive;
    model.downloads = {{{server.address("/" + name)},
                        archive.size(),
                        sha256(archive),
                        ModelPacking::none,
                        {{name, archive.size(), sha256(archive)}}}};
    const ModelCatalogue catalogue({model});
    ModelStoreOptions options;
    options.root = folder.path();
    DownloadStore store(catalogue, options, clock_, [] { return false; });
    LocalSpeechPlatform platform(
        {std::make_shared<NeuralRecognizerProvider>(catalogue, store, helperProgram())}, clock_);
    const std::shared_ptr<SpeechModelOffer> offer = platform.support("ca_ES")->offer;
    QVERIFY(offer);
    QCOMPARE(failureOf(offer->install(std::stop_token())), QString());
    const std::vector<float> samples = sound("h01.wav") + std::vector<float>(16000, 0.0F);
    QCOMPARE(wordsOf(platform, samples, "ca_ES"), QString("Turn off the music now"));
    // Only the archive stays on the disk.
    const QDir installed(store.folder(model));
    QCOMPARE(installed.entryList({"unpacked*"}, QDir::AllEntries), QStringList());
    QVERIFY(store.isInstalled(model));
  }
};

QTEST_GUILESS_MAIN(ModelKindsTest)
#include "model_kinds_test.moc"
