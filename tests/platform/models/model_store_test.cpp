// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/localization.h"
#include "platform/models/model_server.h"
#include "platform/models/packed_bytes.h"
#include "platform/models/store/download_store.h"
#include "platform/models/store/model_store_failures.h"
#include "support/failure_of.h"
#include "support/manual_clock.h"
#include "support/no_more_threads.h"
#include "support/suite.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <semaphore>

using namespace velun;
using namespace velun::test;
using namespace std::chrono_literals;

/// A model with a download of each packing.
class ModelStoreTest final : public test::Suite {
  Q_OBJECT

  const QByteArray plain_ = noise(20'000, 1);
  const QByteArray weights_ = noise(90'000, 2);
  const QByteArray words_ = QByteArray(40'000, 'w');
  const QByteArray encoder_ = noise(50'000, 3);
  ManualClock clock_;
  bool isMetered_ = false;
  std::function<std::int64_t()> freeBytes_;
  std::unique_ptr<QTemporaryDir> dir_;
  std::unique_ptr<ModelServer> server_;
  Model model_;

  std::unique_ptr<DownloadStore> open() {
    ModelStoreOptions options;
    options.root = dir_->path();
    options.retries = {2000ms, 1ms, 2};
    options.freeBytes = freeBytes_;
    return std::make_unique<DownloadStore>(ModelCatalogue({model_}), options, clock_,
                                           [this] { return isMetered_; });
  }

  ModelDownload offer(const QString& name, const QByteArray& bytes, ModelPacking packing,
                      std::vector<ModelFile> files) {
    server_->files["/m/" + name] = bytes;
    return {
        {server_->address("/m/" + name)}, bytes.size(), sha256(bytes), packing, std::move(files)};
  }

  QString folder() const { return dir_->filePath("mixed"); }

  void put(const QString& name, const QByteArray& bytes) const {
    QDir().mkpath(folder());
    QFile file(folder() + '/' + name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
  }

  QByteArray read(const QString& name) const {
    QFile file(folder() + '/' + name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("missing");
  }

  QString install(DownloadStore& store) {
    return failureOf(store.install(model_, std::stop_token()));
  }

  bool isComplete() const {
    return read("plain.bin") == plain_ && read("weights.bin") == weights_ &&
           read("words.txt") == words_ && read("encoder.onnx") == encoder_ &&
           read("tokens.txt") == "a 0";
  }

 private Q_SLOTS:
  void doubtedModelIsVerifiedBeforeItsNextUse_data() {
    QTest::addColumn<bool>("isDamaged");
    QTest::newRow("whole") << false;
    QTest::newRow("damaged") << true;
  }
  void doubtedModelIsVerifiedBeforeItsNextUse() {
    QFETCH(bool, isDamaged);
    const auto store = open();
    QCOMPARE(install(*store), QString());
    const QString name = model_.downloads.front().files.front().name;
    const QByteArray whole = read(name);
    if (isDamaged) {
      // Same size and time, as after a failure of the disk.
      QFile file(folder() + '/' + name);
      QVERIFY(file.open(QIODevice::ReadWrite));
      const QDateTime time = file.fileTime(QFile::FileModificationTime);
      file.write("damaged");
      file.flush();
      QVERIFY(file.setFileTime(time, QFile::FileModificationTime));
      file.close();
      QVERIFY(store->isInstalled(model_));
    }
    QSignalSpy changes(store.get(), &ModelStore::stateChanged);
    QSignalSpy damage(store.get(), &DownloadStore::damageFound);
    store->verifyAgain(model_.id);
    QCOMPARE(changes.size(), 1);
    QTRY_COMPARE(changes.size(), 2);
    QCOMPARE(store->isInstalled(model_), !isDamaged);
    QCOMPARE(damage.size(), isDamaged ? 1 : 0);
    if (!isDamaged) return;
    const QString notice = "The files of “Mixed” are damaged. Download it again in Settings.";
    QCOMPARE(damage[0][0].toString(), notice);
    QCOMPARE(store->state(model_).stage, ModelState::Stage::failed);
    QCOMPARE(store->state(model_).failure, notice);
    QSignalSpy installed(store.get(), &DownloadStore::installed);
    QCOMPARE(install(*store), QString());
    QCOMPARE(installed.size(), 1);
    QCOMPARE(read(name), whole);
    QCOMPARE(store->state(model_).stage, ModelState::Stage::installed);
  }

  void init() {
    Suite::init();
    isMetered_ = false;
    freeBytes_ = nullptr;
    dir_ = std::make_unique<QTemporaryDir>();
    server_ = std::make_unique<ModelServer>();
    model_ = Model{"mixed", ModelKind::translation, {"en", "ko"}, "MIT", 300'000, {}, {}};
    model_.title = "Mixed";
    model_.downloads = {
        offer("plain.bin", plain_, ModelPacking::none,
              {{"plain.bin", plain_.size(), sha256(plain_)}}),
        offer("weights.bin.gz", gzipped(weights_), ModelPacking::gzip,
              {{"weights.bin", weights_.size(), sha256(weights_)}}),
        offer("words.txt.zst", zstdCompressed(words_), ModelPacking::zstd, {{"words.txt", 0, {}}}),
        offer("speech.tar.bz2",
              tarBzip2({{"s/encoder.onnx", encoder_, {}}, {"s/tokens.txt", "a 0", {}}}),
              ModelPacking::archive, {{"encoder.onnx", 0, {}}, {"tokens.txt", 0, {}}})};
  }
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void installsEveryPacking() {
    auto store = open();
    QCOMPARE(install(*store), QString());
    QVERIFY(isComplete());
    QCOMPARE(store->busy(), QStringList());
    QCOMPARE(store->folder(model_), folder());
    QVERIFY(open()->isInstalled(model_));
    QStringList left =
        QDir(dir_->filePath(".downloads/mixed")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    QCOMPARE(left, QStringList());
  }

  void missingThreadFailsTheInstallation() {
    std::unique_ptr<DownloadStore> store;
    {
      const NoMoreThreads few;
      store = open();
      store->download(model_);
      QCOMPARE(store->state(model_).failure, model_failures::noThread().errorDescription());
      QCOMPARE(install(*store), model_failures::noThread().errorDescription());
    }
    QCOMPARE(store->busy(), QStringList());
    QCOMPARE(install(*store), QString());
    QVERIFY(isComplete());
  }

  void changedFileIsDownloadedAgain() {
    auto store = open();
    QCOMPARE(install(*store), QString());
    put("plain.bin", noise(20'000, 99));
    QVERIFY(!store->isInstalled(model_));
    server_->requests.clear();
    QCOMPARE(install(*store), QString());
    QCOMPARE(server_->requests, QStringList("/m/plain.bin"));
    QVERIFY(isComplete());
  }

  void deletedFileIsDownloadedAgain() {
    auto store = open();
    QCOMPARE(install(*store), QString());
    QVERIFY(QFile::remove(folder() + "/tokens.txt"));
    QVERIFY(!store->isInstalled(model_));
    server_->requests.clear();
    QCOMPARE(install(*store), QString());
    QCOMPARE(server_->requests, QStringList("/m/speech.tar.bz2"));
    QVERIFY(isComplete());
  }

  void completeDownloadsSurviveAFailure() {
    const QByteArray archive = server_->files.take("/m/speech.tar.bz2");
    QVERIFY(install(*open()).contains("the server returned error 404"));
    server_->files["/m/speech.tar.bz2"] = archive;
    server_->requests.clear();
    QCOMPARE(install(*open()), QString());
    QCOMPARE(server_->requests, QStringList("/m/speech.tar.bz2"));
    QVERIFY(isComplete());
  }

  void newerModelOfTheSameNameIsNotInstalled() {
    auto store = open();
    QCOMPARE(install(*store), QString());
    model_.downloads[2].sha256 = QByteArray(64, 'b');
    QVERIFY(!store->isInstalled(model_));
  }

  void damagedRecordIsVerifiedAgain() {
    QCOMPARE(install(*open()), QString());
    put("verified.json", "{\"files\": [{\"name\": 3");
    auto store = open();
    QVERIFY(!store->isInstalled(model_));
    server_->requests.clear();
    QCOMPARE(install(*store), QString());
    QVERIFY(!server_->requests.contains("/m/plain.bin"));
    QVERIFY(store->isInstalled(model_));
  }

  void wrongUnpackedFilesAreDiscarded() {
    model_.downloads[1].files[0].sha256 = QByteArray(64, 'c');
    auto store = open();
    const QString text = install(*store);
    QVERIFY2(text.contains("was damaged"), qPrintable(text));
    QVERIFY(!store->isInstalled(model_));
    QVERIFY(!QFile::exists(folder() + "/weights.bin"));
    QVERIFY(!QFile::exists(dir_->filePath(".downloads/mixed/weights.bin.gz.part")));
  }

  void freeSpaceIsCheckedFirst() {
    freeBytes_ = [] {
      return 50'100'000;
    };
    auto store = open();
    const QString text = install(*store);
    QVERIFY2(text.contains("isn’t enough disk space"), qPrintable(text));
    QCOMPARE(server_->requests, QStringList());
    freeBytes_ = [] {
      return 51'000'000;
    };
    QCOMPARE(install(*open()), QString());
  }

  void unknownFreeSpaceIsAccepted() {
    freeBytes_ = [] {
      return -1;
    };
    QCOMPARE(install(*open()), QString());
    QVERIFY(isComplete());
  }

  void failuresAreLocalized() {
    freeBytes_ = [] {
      return 1'000'000;
    };
    Localization::shared().setLanguage(AppLanguage::korean);
    QVERIFY(install(*open()).startsWith("모델을 저장할 디스크 공간이 부족합니다."));
  }

  void placedModelIsInstalledOffline() {
    put("plain.bin", plain_);
    put("weights.bin", weights_);
    put("words.txt.zst", zstdCompressed(words_));
    put("speech.tar.bz2", server_->files["/m/speech.tar.bz2"]);
    auto store = open();
    QTRY_VERIFY_WITH_TIMEOUT(store->isInstalled(model_), 20'000);
    QVERIFY(isComplete());
    QCOMPARE(server_->requests, QStringList());
  }

  void damagedPlacedModelIsRejected() {
    put("plain.bin", noise(20'000, 55));
    put("weights.bin", weights_);
    put("words.txt.zst", zstdCompressed(words_));
    put("speech.tar.bz2", server_->files["/m/speech.tar.bz2"]);
    auto store = open();
    QVERIFY(!store->isInstalled(model_));
    QCOMPARE(install(*store), QString());
    QVERIFY(isComplete());
    QCOMPARE(server_->requests, QStringList("/m/plain.bin"));
  }

  void twoInstancesDownloadOnce() {
    auto first = open();
    auto second = open();
    QCoro::Task<> one = first->install(model_, std::stop_token());
    QCoro::Task<> two = second->install(model_, std::stop_token());
    QCoro::Task<> three = first->install(model_, std::stop_token());
    QCOMPARE(first->busy(), QStringList("mixed"));
    QCOMPARE(failureOf(std::move(one)), QString());
    QCOMPARE(failureOf(std::move(two)), QString());
    QCOMPARE(failureOf(std::move(three)), QString());
    QCOMPARE(server_->requests.size(), 4);
    QVERIFY(isComplete());
  }

  void lockOfADeadProcessIsReplaced() {
    QDir().mkpath(dir_->filePath(".downloads/mixed"));
    QFile lock(dir_->filePath(".downloads/mixed/lock"));
    QVERIFY(lock.open(QIODevice::WriteOnly));
    lock.write("999999999\nvelun\n" + QSysInfo::machineHostName().toUtf8() + "\n");
    lock.close();
    QCOMPARE(install(*open()), QString());
  }

  void waitForAnotherInstanceCanBeStopped() {
    server_->answers = {{.hangAfter = 100}};
    auto first = open();
    QCoro::Task<> one = first->install(model_, std::stop_token());
    QTRY_COMPARE(server_->requests.size(), 1);
    auto second = open();
    std::stop_source stop;
    QCoro::Task<> two = second->install(model_, stop.get_token());
    stop.request_stop();
    QCOMPARE(failureOf(std::move(two)), QString("cancelled"));
    QCOMPARE(failureOf(std::move(one)), QString());
  }

  void stopDoesNotWaitForTheInstaller() {
    std::counting_semaphore<> goesOn(0);
    std::atomic<bool> isBusy = false;
    freeBytes_ = [&] {
      isBusy = true;
      goesOn.acquire();
      return -1;
    };
    auto store = open();
    std::stop_source stop;
    QCoro::Task<> installing = store->install(model_, stop.get_token());
    QTRY_VERIFY(isBusy);
    stop.request_stop();
    QCOMPARE(failureOf(std::move(installing)), QString("cancelled"));
    QCOMPARE(store->busy(), QStringList{"mixed"});
    // A second installation waits for the first one to end.
    QCoro::Task<> again = store->install(model_, std::stop_token());
    freeBytes_ = nullptr;
    goesOn.release(2);
    QCOMPARE(failureOf(std::move(again)), QString());
    QVERIFY(isComplete());
    QTRY_COMPARE(store->busy(), QStringList());
  }

  void stopBeforeTheStartDownloadsNothing() {
    std::stop_source stop;
    stop.request_stop();
    auto store = open();
    QCOMPARE(failureOf(store->install(model_, stop.get_token())), QString("cancelled"));
    QCOMPARE(store->busy(), QStringList());
  }

  void readOnlyFolderIsReported() {
    QFile blocked(dir_->filePath("mixed"));
    QVERIFY(blocked.open(QIODevice::WriteOnly));
    auto store = open();
    QVERIFY(install(*store).startsWith("The model couldn’t be saved"));
  }

  void defaultFolderIsBesideTheSessions() {
    QVERIFY(DownloadStore::standardRoot().endsWith("/app.velun.Velun/models"));
  }
};

QTEST_GUILESS_MAIN(ModelStoreTest)
#include "model_store_test.moc"
