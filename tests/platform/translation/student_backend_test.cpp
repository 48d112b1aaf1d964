// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/translation/student/student_backend.h"

#include "platform/models/model_catalogue.h"
#include "platform/translation/student/model_speeds.h"
#include "platform/translation/translation_routes.h"
#include "support/scripted_model_store.h"
#include "support/suite.h"

#include <algorithm>
#include <QTemporaryDir>
#include <QTest>

using namespace velun;
using namespace velun::test;

namespace {

constexpr std::int64_t kMegabyte = 1 << 20;
constexpr std::int64_t kPlenty = 8192 * kMegabyte;

Model model(const char* id, const char* from, const char* to, double quality,
            std::int64_t megabytes) {
  Model result;
  result.id = QString::fromLatin1(id);
  result.kind = ModelKind::translation;
  result.languages = {QString::fromLatin1(from), QString::fromLatin1(to)};
  result.installedBytes = megabytes * kMegabyte;
  if (quality > 0) result.options.insert(QStringLiteral("comet"), quality);
  return result;
}

const LanguagePair kEnglishKorean{QStringLiteral("en"), QStringLiteral("ko")};

bool contains(const std::vector<LanguagePair>& pairs, const LanguagePair& pair) {
  return std::ranges::find(pairs, pair) != pairs.end();
}

}  // namespace

/// The choice among the models of a pair.
class StudentBackendTest final : public Suite {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    Suite::init();
    folder_ = std::make_unique<QTemporaryDir>();
    store_ = std::make_unique<ScriptedModelStore>(folder_->path());
  }

  void choosesTheBestPublishedQuality() {
    StudentBackend backend(koreanModels(), *store_, kPlenty);
    install(backend);
    QCOMPARE(store_->asked, QStringList({"memory"}));
    QVERIFY(contains(backend.installedPairs(), kEnglishKorean));
    QVERIFY(!contains(backend.downloadablePairs(), kEnglishKorean));
  }

  void keepsTheCatalogueOrderWithoutPublishedQuality() {
    auto models = koreanModels();
    models[1].options = {};
    StudentBackend backend(models, *store_, kPlenty);
    install(backend);
    QCOMPARE(store_->asked, QStringList({"base"}));
  }

  void skipsModelsThatDoNotFitIntoMemory() {
    StudentBackend backend(koreanModels(), *store_, 300 * kMegabyte);
    install(backend);
    QCOMPARE(store_->asked, QStringList({"tiny"}));
    StudentBackend small(koreanModels(), *store_, 30 * kMegabyte);
    QVERIFY(small.downloadablePairs().empty());
    QVERIFY(small.installedPairs().empty());
  }

  void usesAnInstalledModelUntilTheBestIsInstalled() {
    store_->present = {QStringLiteral("tiny")};
    StudentBackend backend(koreanModels(), *store_, kPlenty);
    QVERIFY(contains(backend.installedPairs(), kEnglishKorean));
    QVERIFY(contains(backend.downloadablePairs(), kEnglishKorean));
    QVERIFY(store_->asked.isEmpty());
  }

  void namesTheModelsOfEachPairFromTheBest() {
    store_->present = {QStringLiteral("tiny")};
    const StudentBackend backend(koreanModels(), *store_, kPlenty);
    const std::vector<PairModels> all = backend.models();
    QCOMPARE(all.size(), std::size_t(1));
    QVERIFY(all.front().pair == kEnglishKorean);
    QStringList ids;
    for (const Model& each : all.front().models) ids << each.id;
    QCOMPARE(ids, QStringList({"memory", "base", "tiny"}));
    QCOMPARE(backend.usedModel(kEnglishKorean), QString("tiny"));
    store_->present += QStringLiteral("memory");
    QCOMPARE(backend.usedModel(kEnglishKorean), QString("memory"));
  }

  void remembersModelsThatWereTooSlow() {
    const QString folder = folder_->filePath(QStringLiteral("memory"));
    QVERIFY(QDir().mkpath(folder));
    {
      ModelSpeeds speeds;
      for (int i = 1; i < ModelSpeeds::kTexts; ++i) {
        speeds.add(folder, 2 * ModelSpeeds::kMaxMillisecondsPerToken);
      }
      QVERIFY(!speeds.isTooSlow(folder));
      speeds.add(folder, 2 * ModelSpeeds::kMaxMillisecondsPerToken);
      QVERIFY(speeds.isTooSlow(folder));
    }
    // The next process chooses the next best model.
    StudentBackend backend(koreanModels(), *store_, kPlenty);
    install(backend);
    QCOMPARE(store_->asked, QStringList({"base"}));
  }

  void choosesTheSmallestModelIfAllAreTooSlow() {
    for (const char* id : {"base", "memory", "tiny"}) {
      const QString folder = folder_->filePath(QString::fromLatin1(id));
      QVERIFY(QDir().mkpath(folder));
      ModelSpeeds speeds;
      for (int i = 0; i < ModelSpeeds::kTexts; ++i) speeds.add(folder, 100);
    }
    StudentBackend backend(koreanModels(), *store_, kPlenty);
    install(backend);
    QCOMPARE(store_->asked, QStringList({"tiny"}));
  }

  void keepsAFastModel() {
    const QString folder = folder_->filePath(QStringLiteral("memory"));
    QVERIFY(QDir().mkpath(folder));
    ModelSpeeds speeds;
    for (int i = 0; i < 2 * ModelSpeeds::kTexts; ++i) speeds.add(folder, 1);
    QVERIFY(!speeds.isTooSlow(folder));
    QVERIFY(!ModelSpeeds().isTooSlow(folder));
  }

  void chineseIsOneSourceButTwoTargets() {
    StudentBackend backend(
        {model("enzh", "en", "zh-Hans", 1, 10), model("zhen", "zh-Hans", "en", 1, 10)}, *store_,
        kPlenty);
    const std::vector<LanguagePair> expected{{QStringLiteral("en"), QStringLiteral("zh")},
                                             {QStringLiteral("zh"), QStringLiteral("en")}};
    QVERIFY(backend.downloadablePairs() == expected);
    QCOMPARE(translationLanguage(QStringLiteral("zh_TW"), true), QStringLiteral("zh"));
    QCOMPARE(translationLanguage(QStringLiteral("zh_TW"), false), QStringLiteral("zh-Hant"));
    QCOMPARE(translationLanguage(QStringLiteral("zh-Hans"), false), QStringLiteral("zh"));
    QCOMPARE(translationLanguage(QStringLiteral("no_NO"), false), QStringLiteral("nb"));
    QCOMPARE(translationLanguage(QStringLiteral("iw"), false), QStringLiteral("he"));
  }

  void everyModelOfTheCatalogueHasAllFiles() {
    const std::vector<Model> models = ModelCatalogue::builtIn().ofKind(ModelKind::translation);
    QVERIFY(models.size() > 100);
    for (const Model& model : models) {
      const StudentFiles files = findStudentFiles(model, QString());
      QVERIFY2(
          !files.model.isEmpty() && !files.sourceVocabulary.isEmpty() && !files.shortlist.isEmpty(),
          qPrintable(model.id));
      QCOMPARE(!files.targetVocabulary.isEmpty(), files.sourceVocabulary.contains("srcvocab"));
    }
  }

  void theCatalogueReachesManyLanguages() {
    const StudentBackend backend(ModelCatalogue::builtIn().ofKind(ModelKind::translation), *store_,
                                 kPlenty);
    std::vector<TranslationOffer> offers;
    for (const LanguagePair& pair : backend.downloadablePairs()) offers.push_back({pair, 0, false});
    const QStringList fromKorean = reachableLanguages(offers, {QStringLiteral("ko_KR")});
    const QStringList fromEnglish = reachableLanguages(offers, {QStringLiteral("en_US")});
    QVERIFY(fromEnglish.size() > 30);
    for (const char* language : {"ko", "ja", "zh", "es", "de"}) {
      QVERIFY(fromEnglish.contains(QString::fromLatin1(language)));
    }
    QVERIFY(fromKorean.contains(QStringLiteral("en")));
    QVERIFY(fromKorean.contains(QStringLiteral("ja")));
    QVERIFY(!fromKorean.contains(QStringLiteral("ko")));
    // English, and through it every language but Korean.
    QCOMPARE(fromKorean.size(), fromEnglish.size());
  }

 private:
  static std::vector<Model> koreanModels() {
    return {model("base", "en", "ko", 0.865, 60), model("memory", "en", "ko", 0.8726, 50),
            model("tiny", "en", "ko", 0.8, 20)};
  }

  static void install(StudentBackend& backend) {
    bool done = false;
    backend.install(kEnglishKorean, {}).then([&done] { done = true; });
    QTRY_VERIFY(done);
  }

  std::unique_ptr<QTemporaryDir> folder_;
  std::unique_ptr<ScriptedModelStore> store_;
};

QTEST_GUILESS_MAIN(StudentBackendTest)
#include "student_backend_test.moc"
