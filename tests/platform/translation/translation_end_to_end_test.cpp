// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/model_fixture.h"
#include "platform/models/model_server.h"
#include "platform/models/packed_bytes.h"
#include "platform/models/store/download_store.h"
#include "platform/translation/linux/apertium/apertium_backend.h"
#include "platform/translation/local_translation_platform.h"
#include "platform/translation/student/student_backend.h"
#include "platform/translation/support/toy_models.h"
#include "support/saved_sessions.h"
#include "support/suite.h"

#include <limits>
#include <QFile>
#include <QSignalSpy>
#include <QTest>

using namespace velun;
using namespace velun::test;

namespace {

QByteArray contentOf(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) qFatal("%s is missing", qPrintable(path));
  return file.readAll();
}

QCoro::Task<QStringList> english() {
  const QStringList languages{QStringLiteral("en_US")};
  co_return languages;
}

}  // namespace

/// From a caption to its translation in the saved file, with a model that is downloaded first.
class TranslationEndToEndTest final : public Suite {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    Suite::init();
    folder_ = std::make_unique<QTemporaryDir>();
    server_ = std::make_unique<ModelServer>();
    model_ = koreanModel();
    makePlatform();
    const auto prepare = [](AppSettings& settings) {
      settings.setLocaleID(QStringLiteral("en_US"));
      settings.setTargetID(QStringLiteral("ko"));
      settings.setTranslate(true);
      settings.setShowTranslationOnly(true);
      settings.setAutoSaveSessions(true);
    };
    fixture_ = std::make_unique<ModelFixture>(prepare, platform_.get());
  }

  void cleanup() {
    fixture_.reset();
    settle();
    platform_.reset();
    store_.reset();
  }

  void downloadsTheModelAndTranslatesIntoTheSessionFile() {
    QSignalSpy activity(platform_.get(), &TranslationPlatform::activityChanged);
    fixture_->start();
    fixture_->final(QStringLiteral("Maria sees the red house. The dog is here."));
    fixture_->final(QStringLiteral("Excuse me, Peter!"));
    QTRY_COMPARE(platform_->activity(), QStringLiteral("Downloading translation model…"));
    QCOMPARE(fixture_->model->pendingTranslationIDs().size(), 3);
    QVERIFY(!fixture_->model->translationStatus());
    QTRY_VERIFY(fixture_->model->pendingTranslationIDs().isEmpty());
    QVERIFY(!platform_->activity());
    QCOMPARE(activity.count(), 2);
    QVERIFY(!fixture_->model->translationStatus());

    const CaptionSession saved = test::readSession(*fixture_->model->savedURL());
    QCOMPARE(saved.lines.size(), std::size_t{3});
    QCOMPARE(saved.lines[0].translations.at("ko"), QStringLiteral("마리아는 빨간 집 봅니다."));
    QVERIFY(!saved.lines[1].translations.at("ko").isEmpty());
    QCOMPARE(saved.lines[2].translations.at("ko"), QStringLiteral("실례합니다, Peter!"));
  }

  void usesAnInstalledModel() {
    fixture_->start();
    fixture_->final(QStringLiteral("Excuse me, Peter!"));
    QTRY_COMPARE(fixture_->translationOf(0), QStringLiteral("실례합니다, Peter!"));
    const qsizetype requests = server_->requests.size();
    fixture_->stop();
    fixture_->model->newSession();
    fixture_->start();
    fixture_->final(QStringLiteral("Excuse me, Peter!"));
    QTRY_COMPARE(fixture_->translationOf(0), QStringLiteral("실례합니다, Peter!"));
    QCOMPARE(server_->requests.size(), requests);
  }

  void reportsAFailedDownloadAndRetriesIt() {
    const auto files = std::exchange(server_->files, {});
    fixture_->start();
    fixture_->final(QStringLiteral("Excuse me, Peter!"));
    QTRY_VERIFY(fixture_->model->translationStatus());
    QVERIFY(
        fixture_->model->translationStatus()->startsWith(QStringLiteral("Translation error: ")));
    QVERIFY(!platform_->activity());
    server_->files = files;
    fixture_->final(QStringLiteral("Excuse me, Peter!"));
    QTRY_COMPARE(fixture_->translationOf(1), QStringLiteral("실례합니다, Peter!"));
    QVERIFY(!fixture_->model->translationStatus());
  }

  void listsInstalledAndDownloadableLanguages() {
    QStringList languages;
    platform_->supportedLanguages().then(
        [&languages](const QStringList& list) { languages = list; });
    QTRY_VERIFY(languages.contains(QStringLiteral("ko")));
    QVERIFY(languages.contains(QStringLiteral("es")));
  }

 private:
  void makePlatform() {
    ModelStoreOptions options;
    options.root = folder_->path();
    store_ = std::make_unique<DownloadStore>(ModelCatalogue({model_}), options, clock_,
                                             [] { return false; });
    std::vector<std::unique_ptr<TranslatorBackend>> backends;
    backends.push_back(std::make_unique<StudentBackend>(std::vector<Model>{model_}, *store_,
                                                        std::numeric_limits<std::int64_t>::max()));
    backends.push_back(std::make_unique<ApertiumBackend>());
    platform_ = std::make_unique<LocalTranslationPlatform>(std::move(backends), english, clock_);
  }

  Model koreanModel() {
    Model model;
    model.id = QStringLiteral("translation-enko-toy");
    model.kind = ModelKind::translation;
    model.languages = {QStringLiteral("en"), QStringLiteral("ko")};
    model.licence = QStringLiteral("GPL-3.0-or-later");
    const StudentFiles files = toyFiles(QStringLiteral("enko"));
    for (const auto& [name, path] : {std::pair("model.enko.intgemm.alphas.bin", files.model),
                                     std::pair("lex.50.50.enko.s2t.bin", files.shortlist),
                                     std::pair("srcvocab.enko.spm", files.sourceVocabulary),
                                     std::pair("trgvocab.enko.spm", files.targetVocabulary)}) {
      const QString file = QString::fromLatin1(name);
      const QByteArray content = contentOf(path);
      const QByteArray packed = gzipped(content);
      const QString served = QStringLiteral("/toy/%1.gz").arg(file);
      server_->files[served] = packed;
      model.downloads.push_back({{server_->address(served)},
                                 packed.size(),
                                 sha256(packed),
                                 ModelPacking::gzip,
                                 {{file, content.size(), sha256(content)}}});
      model.installedBytes += content.size();
    }
    return model;
  }

  std::unique_ptr<QTemporaryDir> folder_;
  std::unique_ptr<ModelServer> server_;
  Model model_;
  ManualClock clock_;
  std::unique_ptr<DownloadStore> store_;
  std::unique_ptr<LocalTranslationPlatform> platform_;
  std::unique_ptr<ModelFixture> fixture_;
};

QTEST_GUILESS_MAIN(TranslationEndToEndTest)
#include "translation_end_to_end_test.moc"
