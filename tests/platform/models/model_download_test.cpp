// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/models/model_server.h"
#include "platform/models/packed_bytes.h"
#include "platform/models/store/download_store.h"
#include "support/failure_of.h"
#include "support/manual_clock.h"
#include "support/suite.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

using namespace velun;
using namespace velun::test;
using namespace std::chrono_literals;

/// Downloads a model of one file from a server that misbehaves.
class ModelDownloadTest final : public test::Suite {
  Q_OBJECT

  const QByteArray file_ = noise(300'000, 7);
  ManualClock clock_;
  std::unique_ptr<QTemporaryDir> dir_;
  std::unique_ptr<ModelServer> server_;
  std::unique_ptr<DownloadStore> store_;
  Model model_;

  QString partial() const { return dir_->filePath(".downloads/small/model.bin.part"); }

  void open(HttpRetryPolicy retries = {300ms, 1ms, 3}, const QString& mirror = {}) {
    ModelStoreOptions options;
    options.root = dir_->path();
    options.retries = retries;
    options.mirror = mirror;
    store_ = std::make_unique<DownloadStore>(ModelCatalogue({model_}), options, clock_,
                                             [] { return false; });
  }

  QString install() { return failureOf(store_->install(model_, std::stop_token())); }

  bool isRight() const {
    QFile file(store_->folder(model_) + "/model.bin");
    return store_->isInstalled(model_) && file.open(QIODevice::ReadOnly) &&
           file.readAll() == file_ && !QFile::exists(partial());
  }

  void putPartial(const QByteArray& bytes) const {
    QDir().mkpath(dir_->filePath(".downloads/small"));
    QFile file(partial());
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
  }

 private Q_SLOTS:
  void init() {
    Suite::init();
    dir_ = std::make_unique<QTemporaryDir>();
    server_ = std::make_unique<ModelServer>();
    server_->files["/x/model.bin"] = file_;
    const std::int64_t size = file_.size();
    const QByteArray hash = sha256(file_);
    model_ = Model{"small", ModelKind::recognition, {"en"}, "MIT", size, {}, {}};
    model_.downloads = {{{server_->address("/x/model.bin")},
                         size,
                         hash,
                         ModelPacking::none,
                         {{"model.bin", size, hash}}}};
    open();
  }
  void cleanup() { store_.reset(); }

  void oneRequestIsEnough() {
    QVERIFY(!store_->isInstalled(model_));
    QCOMPARE(install(), QString());
    QVERIFY(isRight());
    QCOMPARE(install(), QString());
    QCOMPARE(server_->requests, QStringList("/x/model.bin"));
  }

  void lostConnectionIsResumed() {
    server_->answers = {{.cutAfter = 100'000}, {.cutAfter = 50'000}};
    QCOMPARE(install(), QString());
    QVERIFY(isRight());
    QCOMPARE(server_->requests,
             QStringList({"/x/model.bin", "/x/model.bin from 100000", "/x/model.bin from 150000"}));
  }

  void serverWithoutRangesRestarts() {
    server_->answers = {{.cutAfter = 100'000}, {.knowsRanges = false}};
    QCOMPARE(install(), QString());
    QVERIFY(isRight());
  }

  void wrongRangeRestarts() {
    server_->answers = {{.cutAfter = 100'000}, {.shiftsRange = true}};
    QCOMPARE(install(), QString());
    QVERIFY(isRight());
    QCOMPARE(server_->requests.last(), QString("/x/model.bin"));
  }

  void stalledConnectionTimesOut() {
    server_->answers = {{.hangAfter = 120'000}};
    QCOMPARE(install(), QString());
    QVERIFY(isRight());
    QCOMPARE(server_->requests.last(), QString("/x/model.bin from 120000"));
  }

  void partialFileIsKeptAfterTheLastAttempt() {
    server_->answers = {{.cutAfter = 100'000}, {.cutAfter = 0}};
    const QString text = install();
    QVERIFY2(text.startsWith("The model download was interrupted"), qPrintable(text));
    QVERIFY(!store_->isInstalled(model_));
    QCOMPARE(QFile(partial()).size(), 100'000);
    server_->recover();
    QCOMPARE(install(), QString());
    QVERIFY(isRight());
    QCOMPARE(server_->requests.last(), QString("/x/model.bin from 100000"));
  }

  void nextProgramResumes() {
    putPartial(file_.left(200'000));
    QCOMPARE(install(), QString());
    QVERIFY(isRight());
    QCOMPARE(server_->sentBytes, qint64(100'000));
  }

  void partOfAnotherFileIsDiscarded() {
    putPartial(QByteArray(200'000, 'z'));
    QCOMPARE(install(), QString());
    QVERIFY(isRight());
    QCOMPARE(server_->requests.last(), QString("/x/model.bin"));
  }

  void tooLongFileIsDiscarded() {
    putPartial(QByteArray(file_.size() + 5, 'z'));
    QCOMPARE(install(), QString());
    QVERIFY(isRight());
  }

  void wrongContentLengthIsRejected() {
    server_->answers = {{.claimedLength = 1'000'000}};
    const QString text = install();
    QVERIFY2(text.contains("different file than expected"), qPrintable(text));
    QVERIFY(!store_->isInstalled(model_));
    QCOMPARE(install(), QString());
    QVERIFY(isRight());
  }

  void tooLongFileWithoutContentLengthIsRejected() {
    server_->answers = {{.sendsLength = false, .body = file_ + "more"}};
    QVERIFY(install().contains("different file than expected"));
    QCOMPARE(install(), QString());
    QVERIFY(isRight());
  }

  void wrongHashIsDiscardedAndReported() {
    QByteArray wrong = file_;
    wrong[1000] = char(~wrong[1000]);
    server_->answers = {{.body = wrong}};
    const QString text = install();
    QVERIFY2(text.contains("was damaged and has been deleted"), qPrintable(text));
    QVERIFY(!QFile::exists(partial()));
    QVERIFY(!store_->isInstalled(model_));
    QCOMPARE(install(), QString());
    QVERIFY(isRight());
  }

  void missingFileIsNotRetried() {
    server_->answers = {{.status = 404}};
    QVERIFY(install().contains("returned error 404"));
    QCOMPARE(server_->requests.size(), 1);
    QCOMPARE(install(), QString());
    QVERIFY(isRight());
  }

  void busyServerIsRetried() {
    server_->answers = {{.status = 503}, {.status = 429}};
    QCOMPARE(install(), QString());
    QVERIFY(isRight());
  }

  void serverErrorsEndTheDownload() {
    server_->answers = {{.status = 500}, {.status = 500}, {.status = 500}};
    QVERIFY(install().contains("returned error 500"));
  }

  void redirectKeepsTheRange() {
    server_->files["/moved.bin"] = file_;
    putPartial(file_.left(1000));
    server_->answers = {{.redirect = server_->address("/moved.bin")}};
    QCOMPARE(install(), QString());
    QVERIFY(isRight());
    QCOMPARE(server_->requests.last(), QString("/moved.bin from 1000"));
  }

  void redirectToHttpIsRejected() {
    server_->answers = {{.redirect = "http://models.example.org/model.bin"}};
    const QString text = install();
    QVERIFY2(text.contains("isn’t secure"), qPrintable(text));
    QCOMPARE(server_->requests.size(), 1);
  }

  void mirrorWithoutHttpsIsRejected() {
    open({300ms, 1ms, 3}, "http://models.example.org");
    const QString text = install();
    QVERIFY2(text.contains("isn’t secure"), qPrintable(text));
    QVERIFY(!store_->isInstalled(model_));
  }

  void redirectLoopEnds() {
    for (int i = 0; i < 200; ++i) {
      server_->answers.push_back({.redirect = server_->address("/x/model.bin")});
    }
    QVERIFY(!install().isEmpty());
    QVERIFY(!store_->isInstalled(model_));
  }

  void refusedConnectionIsReported() {
    server_->close();
    const QString text = install();
    QVERIFY2(text.contains("no connection to 127.0.0.1"), qPrintable(text));
  }

  void fullDiskIsReported() {
    QDir().mkpath(dir_->filePath(".downloads/small"));
    QVERIFY(QFile::link("/dev/full", partial()));
    const QString text = install();
    QVERIFY2(text.startsWith("The model couldn’t be saved"), qPrintable(text));
    QVERIFY(QFile::remove(partial()));
    QCOMPARE(install(), QString());
    QVERIFY(isRight());
  }

  void stopKeepsThePartialFile() {
    open({60s, 1ms, 3});
    server_->answers = {{.hangAfter = 150'000}};
    std::stop_source stop;
    QCoro::Task<> task = store_->install(model_, stop.get_token());
    QTRY_COMPARE(QFile(partial()).size(), 150'000);
    QElapsedTimer timer;
    timer.start();
    stop.request_stop();
    QCOMPARE(failureOf(std::move(task)), QString("cancelled"));
    QVERIFY(timer.elapsed() < 2'000);
    QVERIFY(!store_->isInstalled(model_));
    QCOMPARE(install(), QString());
    QCOMPARE(server_->requests.last(), QString("/x/model.bin from 150000"));
  }

  void stopEndsTheRetryDelay() {
    open({300ms, 60s, 3});
    server_->answers = {{.cutAfter = 10}};
    std::stop_source stop;
    QCoro::Task<> task = store_->install(model_, stop.get_token());
    QTRY_COMPARE(QFile(partial()).size(), 10);
    stop.request_stop();
    QCOMPARE(failureOf(std::move(task)), QString("cancelled"));
  }

  void quittingStopsTheDownload() {
    open({60s, 1ms, 3});
    server_->answers = {{.hangAfter = 150'000}};
    QCoro::Task<> task = store_->install(model_, std::stop_token());
    QTRY_COMPARE(QFile(partial()).size(), 150'000);
    QElapsedTimer timer;
    timer.start();
    store_.reset();
    QVERIFY(timer.elapsed() < 2'000);
    QCOMPARE(failureOf(std::move(task)), QString("cancelled"));
  }
};

QTEST_GUILESS_MAIN(ModelDownloadTest)
#include "model_download_test.moc"
