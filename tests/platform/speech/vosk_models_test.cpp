// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/built_in/built_in_punctuation.h"
#include "platform/speech/built_in_fixture.h"
#include "platform/speech/helper/favouring_model.h"
#include "platform/speech/neural/neural_recognizer_provider.h"
#include "platform/speech/neural_fixture.h"
#include "platform/speech/vosk_archive.h"
#include "support/installed_recognizer.h"
#include "support/scripted_model_store.h"
#include "support/suite.h"

#include <QTemporaryDir>

using namespace velun;
using namespace velun::test;

/// Models that the real libvosk runs: the built-in one, and the same as if it had been downloaded.
class VoskModelsTest final : public test::Suite {
  Q_OBJECT

  /// "He was not an ill disposed young man", in which the model hears other words for two of them.
  static QString recognized(const RecognizerProvider& provider) {
    const std::unique_ptr<RecognizerBackend> recognizer =
        test::installedRecognizer(provider, "en_US")();
    recognizer->load();
    recognizer->acceptAudio(clip("0880"));
    recognizer->finalize();
    QStringList finals;
    for (const TranscriptionResult& result : recognizer->poll()) {
      if (result.isFinal) finals.append(result.text);
    }
    return finals.join(" | ");
  }

  static std::shared_ptr<const CaptionStyle> listing(const QString& words) {
    const auto style = std::make_shared<CaptionStyle>();
    style->userWords = words;
    return style;
  }

  /// Catalogue, store and provider of an English model of libvosk that is installed.
  struct Downloaded {
    explicit Downloaded(const QString& words) : style(listing(words)) {
      static const QByteArray archive = voskArchive(helperProgram());
      Model model = *ModelCatalogue::builtIn().find("vosk-small-en-us-0.15");
      const QString name = model.options["archive"].toString();
      model.downloads.front().sha256 = sha256(archive);
      store.present += model.id;
      QDir().mkpath(store.folder(model));
      QFile file(store.folder(model) + u'/' + name);
      if (!file.open(QIODevice::WriteOnly) || file.write(archive) != archive.size()) {
        qFatal("%s cannot be written", qPrintable(name));
      }
      provider = std::make_unique<NeuralRecognizerProvider>(
          ModelCatalogue({model}), store, helperProgram(), style, [](const QString&, double) {},
          std::make_shared<BuiltInPunctuation>(
              helperProgram(),
              BuiltInPunctuation::installedFolder(QFileInfo(helperProgram()).path())));
    }

    QTemporaryDir folder;
    ScriptedModelStore store{folder.path()};
    std::shared_ptr<const CaptionStyle> style;
    std::unique_ptr<NeuralRecognizerProvider> provider;
  };

 private Q_SLOTS:
  void initTestCase() {
    QVERIFY2(BuiltInRecognizerProvider(builtInFiles()).isInstalled("en_US"),
             "The recognizer is missing: run scripts/setup.");
  }

  void listedWordsOfTheUserAreHeard() {
    const auto heard = [](const QString& words) {
      return recognized(BuiltInRecognizerProvider(builtInFiles(), nullptr, listing(words)));
    };
    const QString without = heard({});
    QVERIFY2(!without.contains("disposed"), qPrintable(without));
    const QString with = heard("Disposed");
    QVERIFY2(with.contains("disposed"), qPrintable(with));
  }

  void downloadedEnglishIsWrittenAsSentences() {
    const QString text = recognized(*Downloaded({}).provider);
    QVERIFY2(text.startsWith("He was not") && text.endsWith("young man."), qPrintable(text));
    QVERIFY2(!text.contains("disposed"), qPrintable(text));
  }

  void listedWordsOfTheUserAreHeardByADownloadedModel() {
    const QString text = recognized(*Downloaded("Disposed").provider);
    QVERIFY2(text.contains("disposed"), qPrintable(text));
  }

  void modelWithAnotherKindOfLanguageModelIsLeftAsItIs() {
    const QTemporaryDir folder;
    QVERIFY(!FavouringModel::make(folder.path(), "Disposed"));
    QVERIFY(QDir(folder.path()).mkpath("graph"));
    QFile languageModel(folder.filePath("graph/Gr.fst"));
    QVERIFY(languageModel.open(QIODevice::WriteOnly));
    QCOMPARE(languageModel.write("another kind"), 12);
    languageModel.close();
    QVERIFY(!FavouringModel::make(folder.path(), "Disposed"));
    QVERIFY(FavouringModel::make(builtInFiles().model, "Disposed"));
  }
};

QTEST_GUILESS_MAIN(VoskModelsTest)
#include "vosk_models_test.moc"
