// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/models/model_server.h"
#include "platform/models/packed_bytes.h"
#include "platform/models/store/download_speed.h"
#include "platform/models/store/download_store.h"
#include "support/failure_of.h"
#include "support/manual_clock.h"
#include "support/suite.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>

using namespace velun;
using namespace velun::test;
using namespace std::chrono_literals;
using Stage = ModelState::Stage;

/// Downloads of a model of two files: their states, and how users control them.
class ModelStatesTest final : public test::Suite {
  Q_OBJECT

  const QByteArray first_ = noise(100'000, 1);
  const QByteArray second_ = noise(300'000, 2);
  const std::int64_t total_ = 400'000;
  ManualClock clock_;
  bool isMetered_ = false;
  std::function<std::int64_t()> freeBytes_;
  std::unique_ptr<QTemporaryDir> dir_;
  std::unique_ptr<ModelServer> server_;
  std::unique_ptr<DownloadStore> store_;
  Model model_;

  void open() {
    store_.reset();
    ModelStoreOptions options;
    options.root = dir_->path();
    options.retries = {60s, 1ms, 2};
    options.freeBytes = freeBytes_;
    store_ = std::make_unique<DownloadStore>(ModelCatalogue({model_}), options, clock_,
                                             [this] { return isMetered_; });
  }

  ModelDownload offer(const QString& name, const QByteArray& bytes) {
    server_->files["/m/" + name] = bytes;
    return {{server_->address("/m/" + name)},
            bytes.size(),
            sha256(bytes),
            ModelPacking::none,
            {{name, bytes.size(), sha256(bytes)}}};
  }

  Stage stage() const { return store_->state(model_).stage; }
  std::int64_t doneBytes() const { return store_->state(model_).doneBytes; }
  QString partial() const { return dir_->filePath(".downloads/two/second.bin.part"); }

  /// Starts a download that stalls in the second file.
  void startStalling(int bytes = 150'000) {
    server_->answers = {{}, {.hangAfter = bytes}};
    store_->download(model_);
    QTRY_COMPARE_WITH_TIMEOUT(doneBytes(), 100'000 + bytes, 20'000);
    QCOMPARE(stage(), Stage::downloading);
  }

  QStringList filesOnDisk() const {
    return QDir(dir_->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
  }

 private Q_SLOTS:
  void init() {
    Suite::init();
    isMetered_ = false;
    freeBytes_ = nullptr;
    dir_ = std::make_unique<QTemporaryDir>();
    server_ = std::make_unique<ModelServer>();
    model_ = Model{"two", ModelKind::recognition, {"en"}, "MIT", total_, {}, {}};
    model_.downloads = {offer("first.bin", first_), offer("second.bin", second_)};
    open();
  }
  void cleanup() { store_.reset(); }

  void nothingIsRequestedUnasked() {
    QCOMPARE(stage(), Stage::absent);
    QCOMPARE(store_->state(model_).totalBytes, total_);
    clock_.advance(24h);
    QCOMPARE(clock_.scheduledCount(), std::size_t(0));
    // A request that was made before this one would be in the list.
    QCOMPARE(failureOf(store_->install(model_, {})), QString());
    QCOMPARE(server_->requests, QStringList({"/m/first.bin", "/m/second.bin"}));
  }

  void askedDownloadInstalls() {
    const QSignalSpy changes(store_.get(), &ModelStore::stateChanged);
    store_->download(model_);
    store_->download(model_);
    QVERIFY(store_->state(model_).isBusy());
    QTRY_COMPARE_WITH_TIMEOUT(stage(), Stage::installed, 20'000);
    QCOMPARE(doneBytes(), total_);
    QVERIFY(store_->isInstalled(model_));
    QTRY_COMPARE(store_->busy(), QStringList());
    QCOMPARE(server_->requests.size(), 2);
    QVERIFY(!changes.isEmpty());
    QCOMPARE(changes.last(), QVariantList{"two"});
    store_->download(model_);
    QCOMPARE(store_->busy(), QStringList());
  }

  void stalledDownloadHasNoSpeed() {
    startStalling();
    clock_.advance(10s);
    QCOMPARE(store_->state(model_).bytesPerSecond, 0.0);
    QVERIFY(!store_->state(model_).secondsLeft);
  }

  void speedIsTheAverageOfTheLastSeconds() {
    DownloadSpeed speed;
    QVERIFY(!speed.secondsFor(1));
    speed.add(10, 0);
    speed.add(10.5, 1'000);
    QCOMPARE(speed.bytesPerSecond(), 0.0);
    speed.add(12, 4'000);
    QCOMPARE(speed.bytesPerSecond(), 2'000.0);
    QCOMPARE(speed.secondsFor(5'000), std::optional(3));
    // Old measurements do not count.
    for (int second = 13; second <= 25; ++second) speed.add(second, 4'000);
    QCOMPARE(speed.bytesPerSecond(), 0.0);
    QVERIFY(!speed.secondsFor(5'000));
    // The download started over.
    speed.add(26, 10);
    QCOMPARE(speed.bytesPerSecond(), 0.0);
  }

  void changesAreReportedAFewTimesASecond() {
    startStalling();
    const QSignalSpy changes(store_.get(), &ModelStore::stateChanged);
    clock_.advance(1s);
    QVERIFY2(changes.count() >= 2 && changes.count() <= 5,
             qPrintable(QString::number(changes.count())));
  }

  void pausedDownloadContinuesWhereItWas() {
    startStalling();
    store_->pause(model_);
    QCOMPARE(stage(), Stage::paused);
    QCOMPARE(doneBytes(), 250'000);
    store_->download(model_);
    QVERIFY(store_->state(model_).isBusy());
    QTRY_COMPARE_WITH_TIMEOUT(stage(), Stage::installed, 20'000);
    QCOMPARE(server_->requests.last(), QString("/m/second.bin from 150000"));
  }

  void pausedDownloadSurvivesARestart() {
    startStalling();
    store_->pause(model_);
    open();
    QCOMPARE(stage(), Stage::paused);
    QCOMPARE(doneBytes(), 250'000);
    QCOMPARE(store_->busy(), QStringList());
    QCOMPARE(server_->requests.size(), 2);
    store_->download(model_);
    QTRY_COMPARE_WITH_TIMEOUT(stage(), Stage::installed, 20'000);
    QCOMPARE(server_->requests.last(), QString("/m/second.bin from 150000"));
  }

  void quitDuringADownloadIsAPause() {
    startStalling();
    open();
    QCOMPARE(stage(), Stage::paused);
    QCOMPARE(doneBytes(), 250'000);
  }

  void pauseBeforeTheFirstByteIsKept() {
    server_->answers = {{.hangAfter = 0}};
    store_->download(model_);
    QTRY_COMPARE(server_->requests.size(), 1);
    store_->pause(model_);
    QCOMPARE(stage(), Stage::paused);
    QTRY_COMPARE(store_->busy(), QStringList());
    QCOMPARE(stage(), Stage::paused);
  }

  void captionsThatWaitGoOnWaitingDuringAPause() {
    server_->answers = {{}, {.hangAfter = 150'000}};
    QCoro::Task<> installing = store_->install(model_, {});
    QTRY_COMPARE_WITH_TIMEOUT(doneBytes(), 250'000, 20'000);
    store_->pause(model_);
    QTRY_COMPARE(store_->busy(), QStringList());
    QCOMPARE(stage(), Stage::paused);
    store_->download(model_);
    QCOMPARE(failureOf(std::move(installing)), QString());
    QCOMPARE(stage(), Stage::installed);
  }

  void askedDownloadOutlivesTheCaptionsThatWait() {
    startStalling();
    std::stop_source stop;
    QCoro::Task<> installing = store_->install(model_, stop.get_token());
    stop.request_stop();
    QCOMPARE(failureOf(std::move(installing)), QString("cancelled"));
    QCOMPARE(stage(), Stage::downloading);
  }

  void stoppedCaptionsPauseTheirDownload() {
    server_->answers = {{}, {.hangAfter = 150'000}};
    std::stop_source stop;
    QCoro::Task<> installing = store_->install(model_, stop.get_token());
    QTRY_COMPARE_WITH_TIMEOUT(doneBytes(), 250'000, 20'000);
    stop.request_stop();
    QCOMPARE(failureOf(std::move(installing)), QString("cancelled"));
    QCOMPARE(stage(), Stage::paused);
  }

  void cancelDeletesThePart() {
    startStalling();
    QVERIFY(store_->diskBytes(model_) >= 250'000);
    store_->cancel(model_);
    QCOMPARE(stage(), Stage::absent);
    QTRY_COMPARE(store_->busy(), QStringList());
    QCOMPARE(stage(), Stage::absent);
    QCOMPARE(store_->diskBytes(model_), std::int64_t(0));
    QVERIFY(!filesOnDisk().contains("two"));
    QTRY_COMPARE(QDir(dir_->filePath(".discarded")).entryList(QDir::NoDotAndDotDot | QDir::AllDirs),
                 QStringList());
  }

  void cancelOfAPausedDownloadDeletesThePart() {
    startStalling();
    store_->pause(model_);
    open();
    store_->cancel(model_);
    QCOMPARE(stage(), Stage::absent);
    QCOMPARE(store_->diskBytes(model_), std::int64_t(0));
  }

  void cancelEndsTheWaitOfCaptions() {
    server_->answers = {{.hangAfter = 10}};
    QCoro::Task<> installing = store_->install(model_, {});
    QTRY_COMPARE(server_->requests.size(), 1);
    store_->cancel(model_);
    const QString text = failureOf(std::move(installing));
    QVERIFY2(text.contains("download was cancelled"), qPrintable(text));
  }

  void downloadAfterCancelBeginsAnew() {
    startStalling();
    store_->cancel(model_);
    store_->download(model_);
    QVERIFY(store_->state(model_).isBusy());
    QTRY_COMPARE_WITH_TIMEOUT(stage(), Stage::installed, 20'000);
    QCOMPARE(server_->requests.mid(2), QStringList({"/m/first.bin", "/m/second.bin"}));
  }

  void failureIsKeptUntilTheNextAttempt() {
    QByteArray wrong = first_;
    wrong[1000] = char(~wrong[1000]);
    server_->answers = {{.body = wrong}};
    store_->download(model_);
    QTRY_COMPARE_WITH_TIMEOUT(stage(), Stage::failed, 20'000);
    const QString text = store_->state(model_).failure;
    QVERIFY2(text.contains("was damaged and has been deleted"), qPrintable(text));
    QCOMPARE(doneBytes(), std::int64_t(0));
    store_->download(model_);
    QVERIFY(store_->state(model_).isBusy());
    QTRY_COMPARE_WITH_TIMEOUT(stage(), Stage::installed, 20'000);
  }

  void freeSpaceIsCheckedBeforeTheDownload() {
    freeBytes_ = [] {
      return 50'100'000;
    };
    open();
    store_->download(model_);
    QTRY_COMPARE(stage(), Stage::failed);
    QVERIFY(store_->state(model_).failure.contains("isn’t enough disk space"));
    QCOMPARE(server_->requests, QStringList());
  }

  void diskThatBecomesFullIsReported() {
    QDir().mkpath(dir_->filePath(".downloads/two"));
    QVERIFY(QFile::link("/dev/full", partial()));
    store_->download(model_);
    QTRY_COMPARE_WITH_TIMEOUT(stage(), Stage::failed, 20'000);
    const QString text = store_->state(model_).failure;
    QVERIFY2(text.contains("the disk is full. Free some space"), qPrintable(text));
    // The first file is complete and is not downloaded again.
    QVERIFY(QFile::remove(partial()));
    store_->download(model_);
    QTRY_COMPARE_WITH_TIMEOUT(stage(), Stage::installed, 20'000);
    QCOMPARE(server_->requests.count("/m/first.bin"), 1);
  }

  void meteredConnectionIsTold() {
    QVERIFY(!store_->isMetered());
    isMetered_ = true;
    QVERIFY(store_->isMetered());
    // The user was asked.
    store_->download(model_);
    QTRY_COMPARE_WITH_TIMEOUT(stage(), Stage::installed, 20'000);
  }

  void removeFreesTheDisk() {
    QCOMPARE(failureOf(store_->install(model_, {})), QString());
    QVERIFY(store_->diskBytes(model_) > total_);
    store_->remove(model_);
    QCOMPARE(stage(), Stage::absent);
    QCOMPARE(store_->diskBytes(model_), std::int64_t(0));
    QTRY_COMPARE(QDir(dir_->filePath(".discarded")).entryList(QDir::NoDotAndDotDot | QDir::AllDirs),
                 QStringList());
    open();
    QCOMPARE(stage(), Stage::absent);
  }

  void otherFilesOfTheFolderAreKept() {
    QCOMPARE(failureOf(store_->install(model_, {})), QString());
    QFile note(dir_->filePath("two/note.txt"));
    QVERIFY(note.open(QIODevice::WriteOnly));
    note.close();
    store_->remove(model_);
    QVERIFY(note.exists());
    QVERIFY(!QFile::exists(dir_->filePath("two/first.bin")));
  }

  void usedModelIsNotRemoved() {
    QCOMPARE(failureOf(store_->install(model_, {})), QString());
    std::shared_ptr<const void> use = store_->use(model_);
    std::shared_ptr<const void> another = store_->use(model_);
    use.reset();
    QVERIFY(store_->isUsed(model_));
    QVERIFY_THROWS_EXCEPTION(Failure, store_->remove(model_));
    QVERIFY(store_->isInstalled(model_));
    another.reset();
    store_->remove(model_);
    QVERIFY(!store_->isInstalled(model_));
  }

  void leftoversOfAKilledRunAreDeleted() {
    QVERIFY(QDir().mkpath(dir_->filePath(".discarded/one/partial")));
    open();
    QTRY_VERIFY(!QDir(dir_->filePath(".discarded")).exists());
  }

  void modelPutInByHandIsReported() {
    QVERIFY(QDir().mkpath(dir_->filePath("two")));
    for (const auto& [name, bytes] : {std::pair("first.bin", first_), {"second.bin", second_}}) {
      QFile file(dir_->filePath(QString("two/") + name));
      QVERIFY(file.open(QIODevice::WriteOnly));
      file.write(bytes);
    }
    open();
    QSignalSpy changes(store_.get(), &ModelStore::stateChanged);
    VERIFY_SOON(stage() == Stage::installed);
    // The thread waits for the disk in between.
    VERIFY_SOON(changes.count() == 1);
    QCOMPARE(server_->requests, QStringList());
  }
};

QTEST_GUILESS_MAIN(ModelStatesTest)
#include "model_states_test.moc"
