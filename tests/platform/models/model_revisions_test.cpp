// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/localization.h"
#include "platform/models/model_server.h"
#include "platform/models/packed_bytes.h"
#include "platform/models/store/download_store.h"
#include "support/failure_of.h"
#include "support/manual_clock.h"
#include "support/suite.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <stop_token>
#include <thread>

using namespace velun;
using namespace velun::test;
using namespace std::chrono_literals;
using Stage = ModelState::Stage;

/// A model of which the catalogue has another revision than the disk, and removals that fail.
class ModelRevisionsTest final : public test::Suite {
  Q_OBJECT

  ManualClock clock_;
  std::unique_ptr<QTemporaryDir> dir_;
  std::unique_ptr<ModelServer> server_;
  std::unique_ptr<DownloadStore> store_;
  Model old_;
  Model new_;

  Model revision(const QString& file, const QByteArray& bytes) const {
    server_->files["/m/" + file] = bytes;
    Model model{"one", ModelKind::recognition, {"en"}, "MIT", bytes.size(), {}, {}};
    model.downloads = {{{server_->address("/m/" + file)},
                        bytes.size(),
                        sha256(bytes),
                        ModelPacking::none,
                        {{file, bytes.size(), sha256(bytes)}}}};
    return model;
  }

  void open(const Model& model) {
    store_.reset();
    ModelStoreOptions options;
    options.root = dir_->path();
    options.retries = {60s, 1ms, 2};
    store_ = std::make_unique<DownloadStore>(ModelCatalogue({model}), options, clock_,
                                             [] { return false; });
  }

  void install(const Model& model) {
    open(model);
    QCOMPARE(failureOf(store_->install(model, {})), QString());
  }

 private Q_SLOTS:
  void init() {
    Suite::init();
    dir_ = std::make_unique<QTemporaryDir>();
    server_ = std::make_unique<ModelServer>();
    old_ = revision("old.bin", noise(20'000, 1));
    new_ = revision("new.bin", noise(30'000, 2));
  }
  void cleanup() {
    store_.reset();
    Localization::shared().setLanguage(AppLanguage::english);
  }

  void otherRevisionIsRecognizedAndReplaced() {
    install(old_);
    QVERIFY(store_->installation(old_)->isCurrent);
    open(new_);
    QVERIFY(store_->installation(new_) && !store_->installation(new_)->isCurrent);
    QCOMPARE(store_->state(new_).stage, Stage::absent);
    QVERIFY(!store_->isInstalled(new_));
    install(new_);
    QVERIFY(store_->installation(new_)->isCurrent);
  }

  void changedFilesAreNoOtherRevision() {
    install(old_);
    QFile file(dir_->filePath("one/old.bin"));
    QVERIFY(file.open(QIODevice::Append));
    file.write("more");
    file.close();
    open(new_);
    QVERIFY(!store_->installation(new_));
  }

  void otherRevisionIsRemovedWithItsFiles() {
    install(old_);
    open(new_);
    store_->remove(new_);
    QVERIFY(!store_->installation(new_));
    QVERIFY(!QDir(dir_->filePath("one")).exists());
  }

  void removalIsWholeWhileAnotherStartDeletesDiscardedFiles() {
    const std::jthread deletion([path = dir_->filePath(".discarded")](const std::stop_token& stop) {
      while (!stop.stop_requested()) QDir(path).removeRecursively();
    });
    for (int round = 0; round < 40; ++round) {
      install(old_);
      open(new_);
      store_->remove(new_);
      QVERIFY(!store_->installation(new_));
      QVERIFY(!QDir(dir_->filePath("one")).exists());
    }
  }

  void failedRemovalIsReportedAndKeepsTheModel() {
    install(new_);
    // Nothing can be moved to where removed files are deleted.
    QFile obstacle(dir_->filePath(".discarded"));
    QVERIFY(obstacle.open(QIODevice::WriteOnly));
    QString text;
    try {
      store_->remove(new_);
    } catch (const Failure& failure) {
      text = failure.errorDescription();
    }
    QVERIFY2(text.startsWith("The model couldn’t be removed."), qPrintable(text));
    QVERIFY(store_->isInstalled(new_));
    QVERIFY(obstacle.remove());
    store_->remove(new_);
    QVERIFY(!store_->isInstalled(new_));
  }

  void failureFollowsTheInterfaceLanguage() {
    server_->files.clear();
    open(new_);
    store_->download(new_);
    QTRY_COMPARE_WITH_TIMEOUT(store_->state(new_).stage, Stage::failed, 20'000);
    QVERIFY(store_->state(new_).failure.startsWith("The model couldn’t be downloaded"));
    Localization::shared().setLanguage(AppLanguage::korean);
    QVERIFY(store_->state(new_).failure.startsWith("모델을 다운로드할 수 없습니다"));
  }
};

QTEST_GUILESS_MAIN(ModelRevisionsTest)
#include "model_revisions_test.moc"
