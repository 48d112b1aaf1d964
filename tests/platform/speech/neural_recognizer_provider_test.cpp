// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/neural/neural_recognizer_provider.h"

#include "platform/speech/helper/recognizer_settings.h"
#include "platform/speech/neural/english_backend.h"
#include "support/failure_of.h"
#include "support/scripted_model_store.h"
#include "support/suite.h"

#include <QJsonArray>
#include <QTemporaryDir>

using namespace velun;
using namespace velun::test;

class NeuralRecognizerProviderTest final : public test::Suite {
  Q_OBJECT

  const ModelCatalogue catalogue_ = ModelCatalogue::builtIn();
  const QTemporaryDir folder_;
  ScriptedModelStore store_{folder_.path()};
  NeuralRecognizerProvider provider_{catalogue_, store_, "/programs/velun-recognizer"};

  const Model& modelOf(const QString& language, ModelKind kind = ModelKind::recognition) const {
    for (const Model& model : catalogue_.models()) {
      if (model.kind == kind && model.languages.contains(language)) return model;
    }
    qFatal("no model for %s", qPrintable(language));
  }

  const Model& named(const QString& id) const {
    const Model* model = catalogue_.find(id);
    if (!model) qFatal("no model %s", qPrintable(id));
    return *model;
  }
  /// An English model without case and punctuation.
  const Model& plainEnglish() const { return named("zipformer-en-2023-06-26"); }

  RecognizerSettings settings(const QString& locale) const {
    return provider_.settings(modelOf(locale.section('_', 0, 0)), locale);
  }
  RecognizerProvider::Factory factory(const QString& locale) const {
    return provider_.makeFactory(locale, modelOf(locale.section('_', 0, 0)).id);
  }
  std::shared_ptr<SpeechModelOffer> offer(const QString& locale) {
    return provider_.offer(locale, modelOf(locale.section('_', 0, 0)).id);
  }

 private Q_SLOTS:
  void init() {
    Suite::init();
    store_.present.clear();
    store_.asked.clear();
    store_.failure.reset();
  }

  void listsSupportedLocales() {
    const QStringList locales = provider_.supportedLocales();
    for (const char* each : {"en_US", "fr_FR", "de_DE", "ru_RU", "id_ID", "ko_KR", "zh_CN", "es_ES",
                             "it_IT", "ja_JP", "nl_NL", "cs_CZ", "sk_SK"}) {
      QVERIFY2(locales.contains(each), each);
    }
    QVERIFY(NeuralRecognizerProvider(catalogue_, store_, {}).supportedLocales().isEmpty());
  }

  void installedLocalesComeFromTheStore() {
    QVERIFY(!provider_.isInstalled("de_DE"));
    store_.present += modelOf("de").id;
    QVERIFY(provider_.isInstalled("de_DE"));
    QVERIFY(!provider_.isInstalled("id_ID"));
    QVERIFY(!provider_.isInstalled("xx_XX"));
  }

  void modelIsBeingCompletedWhileItsPunctuationIsDownloaded() {
    const Model& marks = modelOf("en", ModelKind::punctuation);
    const QString id = plainEnglish().id;
    QVERIFY(!provider_.isBeingCompleted("en_US", id));
    ModelState state;
    state.stage = ModelState::Stage::downloading;
    store_.setState(marks, state);
    QVERIFY(provider_.isBeingCompleted("en_US", id));
    store_.setInstalled(marks);
    QVERIFY(!provider_.isBeingCompleted("en_US", id));
  }

  void everyModelOfALocaleIsACandidate() {
    Model second = modelOf("en");
    second.id = "second-en";
    std::vector<Model> models = catalogue_.models();
    models.push_back(second);
    const NeuralRecognizerProvider provider(ModelCatalogue(models), store_, "/programs/helper");
    store_.present += second.id;
    const std::vector<RecognizerCandidate> candidates = provider.candidates("en_US");
    QVERIFY(candidates.size() > 2);
    QCOMPARE(candidates.front().id, modelOf("en").id);
    QVERIFY(!candidates.front().isInstalled);
    QCOMPARE(candidates.back().id, second.id);
    QVERIFY(candidates.back().isInstalled);
    QCOMPARE(candidates.back().modelBytes, second.installedBytes);
    QVERIFY(provider.isInstalled("en_US"));
    QVERIFY(provider.settings(second, "en_US").encoder.startsWith(store_.folder(second) + u'/'));
    const NeuralRecognizerProvider withoutHelper(ModelCatalogue(models), store_, {});
    QVERIFY(withoutHelper.candidates("en_US").empty());
  }

  void punctuationIsAddedWhereThereIsAModelForIt() {
    QStringList punctuated;
    for (const QString& locale : provider_.supportedLocales()) {
      for (const RecognizerCandidate& each : provider_.candidates(locale)) {
        if (each.getsPunctuation) punctuated << each.id;
      }
    }
    QCOMPARE(punctuated, QStringList({"nemo-fast-conformer-en-480ms", "zipformer-en-2023-06-26"}));
  }

  void unclearLicenceHasToBeAgreedTo() {
    for (const RecognizerCandidate& each : provider_.candidates("de_DE")) {
      const bool isUnclear = !catalogue_.find(each.model)->licenceNotice.isEmpty();
      QCOMPARE(each.needsAgreement, isUnclear);
    }
    const auto all = provider_.candidates("de_DE");
    QVERIFY(std::ranges::any_of(all, &RecognizerCandidate::needsAgreement));
    QVERIFY(!std::ranges::all_of(all, &RecognizerCandidate::needsAgreement));
  }

  void onlyEnglishIsWrittenByTheRulesOfEnglish() {
    const auto hasEnglishRules = [this](const QString& locale) {
      const auto recognizer = factory(locale)();
      return dynamic_cast<const EnglishBackend*>(recognizer.get()) != nullptr;
    };
    QVERIFY(hasEnglishRules("en_US"));
    for (const char* other : {"ko_KR", "ja_JP", "de_DE", "fr_FR", "ru_RU"}) {
      QVERIFY2(!hasEnglishRules(other), other);
    }
  }

  void settingsComeFromTheCatalogue() {
    const Model& small = named("zipformer-ko-72m-chunk-16");
    const RecognizerSettings korean = provider_.settings(small, "ko_KR");
    QVERIFY(korean.textFromTokens);
    QVERIFY(korean.encoder.startsWith(store_.folder(small) + u'/'));
    QVERIFY(provider_.settings(named("zipformer-fr-2023-04-14"), "fr_FR").modelType.isEmpty());
    QVERIFY(provider_.settings(named("zipformer-zh-en-t-chunk-32"), "zh_CN").modelType.isEmpty());
    QVERIFY(provider_.settings(named("zipformer-small-ru-2025-08-16"), "ru_RU").tailSilenceMs >=
            770);
    QVERIFY(provider_.settings(plainEnglish(), "en_US").foldsLetters);
    const RecognizerSettings english = settings("en_US");
    QVERIFY(english.writesMarks);
    QVERIFY(!english.foldsLetters);
    const RecognizerSettings spanish = settings("es_ES");
    QVERIFY(spanish.hearsLanguage);
    QVERIFY(spanish.keepsContext);
    QCOMPARE(spanish.language, QString("es"));
    QCOMPARE(spanish.leadSilenceMs, 500);
    QVERIFY(spanish.endpointSilence >= 0.6);
    QVERIFY(provider_.candidates("xx_XX").empty());
  }

  void settingsOfAModelAreItsOptions() {
    Model model = modelOf("es");
    model.writesPunctuation = true;
    model.options["keepsContext"] = true;
    model.options["leadSilenceMs"] = 500;
    model.options["tailSilenceMs"] = 800;
    model.options["endpointSilence"] = 1.2;
    model.options["idleSilence"] = 3.5;
    model.options["maxPhrase"] = 15;
    model.options["featureDimension"] = 128;
    model.options["minimumLibrary"] = "1.13.5";
    const RecognizerSettings settings = provider_.settings(model, "es_ES");
    QVERIFY(settings.writesMarks);
    QVERIFY(settings.keepsContext);
    QCOMPARE(settings.leadSilenceMs, 500);
    QCOMPARE(settings.tailSilenceMs, 800);
    QCOMPARE(settings.endpointSilence, 1.2);
    QCOMPARE(settings.idleSilence, 3.5);
    QCOMPARE(settings.maxPhrase, 15);
    QCOMPARE(settings.featureDimension, 128);
    QCOMPARE(settings.minimumLibrary, QString("1.13.5"));
    QCOMPARE(RecognizerSettings::fromJson(settings.toJson()), settings);
  }

  void modelForANewerLibraryIsNotOffered() {
    const QTemporaryDir installed;
    QVERIFY(QDir(installed.path()).mkpath("lib/velun/recognizers"));
    const auto write = [&installed](const QString& name, const QByteArray& contents) {
      QFile file(installed.filePath("lib/velun/recognizers/" + name));
      QVERIFY(file.open(QIODevice::WriteOnly));
      file.write(contents);
    };
    write("libsherpa-onnx-c-api.so", "");
    write("package.json", R"({"name": "sherpa-onnx", "version": "1.13.4"})");
    Model model = modelOf("es");
    model.options["locales"] = QJsonArray{"xx_XX"};
    const auto offers = [&](const char* version) {
      model.options["minimumLibrary"] = version;
      const NeuralRecognizerProvider provider(ModelCatalogue({model}), store_,
                                              installed.filePath("bin/velun-recognizer"));
      const bool isListed = provider.supportedLocales().contains("xx_XX");
      if (provider.candidates("xx_XX").empty() == isListed) qFatal("candidates differ");
      if (provider.obstacle(model).has_value() == isListed) qFatal("obstacles differ");
      return isListed;
    };
    QVERIFY(offers("1.13.4"));
    QVERIFY(!offers("1.13.5"));
    write("package.json", "{}");
    QVERIFY(offers("1.13.5"));
  }

  void punctuationIsUsedOnceInstalled() {
    const auto english = [this] {
      return provider_.settings(plainEnglish(), "en_US");
    };
    QVERIFY(!english().hasPunctuation());
    const Model& marks = modelOf("en", ModelKind::punctuation);
    store_.present += marks.id;
    QVERIFY(english().punctuationModel.startsWith(store_.folder(marks) + u'/'));
    // This one writes its own.
    QVERIFY(!settings("en_US").hasPunctuation());
    QVERIFY(!settings("de_DE").hasPunctuation());
  }

  void downloadIncludesPunctuation() {
    const Model& recognizer = plainEnglish();
    const Model& marks = modelOf("en", ModelKind::punctuation);
    const auto model = provider_.offer("en_US", recognizer.id);
    QCOMPARE(model->downloadBytes(), recognizer.downloadBytes() + marks.downloadBytes());
    QCOMPARE(failureOf(model->install(std::stop_token())), QString());
    QCOMPARE(store_.asked, QStringList({recognizer.id, marks.id}));
    QVERIFY(provider_.isInstalled("en_US"));
  }

  void missingPunctuationIsNotDownloadedUnasked() {
    store_.present += plainEnglish().id;
    QVERIFY(provider_.makeFactory("en_US", plainEnglish().id));
    QVERIFY(store_.asked.isEmpty());
  }

  void modelIsUsedAsLongAsItsRecognizerExists() {
    const Model& model = modelOf("en");
    store_.present += model.id;
    const RecognizerProvider::Factory made = factory("en_US");
    // Other recognizers are in use.
    QVERIFY(!store_.isUsed(model));
    std::unique_ptr<RecognizerBackend> recognizer = made();
    QVERIFY(store_.isUsed(model));
    recognizer.reset();
    QVERIFY(!store_.isUsed(model));
  }

  void failureOfTheStoreIsPassedOn() {
    store_.failure = "no space";
    const auto model = offer("de_DE");
    QCOMPARE(failureOf(model->install(std::stop_token())), QString("no space"));
    QVERIFY(!provider_.isInstalled("de_DE"));
    QVERIFY(!provider_.offer("xx_XX", "unknown"));
  }
};

QTEST_GUILESS_MAIN(NeuralRecognizerProviderTest)
#include "neural_recognizer_provider_test.moc"
